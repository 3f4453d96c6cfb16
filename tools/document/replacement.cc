#include "tools/document/replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include "files/replace_file.h"
#include "hearth/be_config.h"
#include "tools/document/area.h"
#include "tools/document/fingerprint.h"
#include "tools/document/history.h"
#include "tools/document/loaded_file.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/output.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

constexpr char kKind[] = "change";

std::string noteFile() {
  return std::string(BEConfig::DATA_LOCATION) + "/.hearth-change.json";
}

// The contents of the file; nothing where there is none.
std::optional<std::string> contentsOf(const std::string& file) {
  return exists(file) ? std::optional<std::string>(readWhole(file)) : std::nullopt;
}

// The fingerprint of what a file holds; empty where there is none.
std::string fingerprintOfFile(const std::string& file) {
  const std::optional<std::string> text = contentsOf(file);
  return text ? fingerprintOfText(*text) : "";
}

// The note is the owner's alone: it holds whatever secrets the databases hold.
void writeNote(const Snapshot& snapshot) {
  const MadeWithMode mode(0600);
  saveAs(noteFile(), *jsonOf(snapshot, kKind));
}

// The removal reaches the device before any later edit does: a note that came back after a power
// cut would speak of databases that have changed since.
void removeNote() {
  unlink(noteFile().c_str());
  const UniqueFd folder(open(BEConfig::DATA_LOCATION.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  static_cast<void>(fsync(folder.get()));
}

// A database on its way to its new contents, and back again when another one fails.
class Replacing {
 public:
  explicit Replacing(const StoredDatabase& database)
      : database_(database),
        file_(databaseFile(database.area)),
        old_(contentsOf(file_)),
        kept_(file_, database.fingerprint()) {}

  void write() const;
  [[nodiscard]] bool takeBack() const;
  void done() { kept_.replaced(); }

 private:
  const StoredDatabase& database_;
  const std::string file_;
  const std::optional<std::string> old_;
  KeptFile kept_;
};

void Replacing::write() const {
  // Only a file that is made gets the mode; one that is there keeps its own.
  const MadeWithMode mode(database_.mode == 0 ? 0644 : database_.mode);
  if (database_.text.empty()) {
    saveAs(file_, *database_.document);
  } else if (!replaceFile(file_.c_str(), database_.text.data(), database_.text.size(),
                          Durability::kFlushed)) {
    throw Failure(Exit::kIo, inQuotes(file_) + ": cannot be saved: " + strerror(errno));
  }
}

bool Replacing::takeBack() const {
  if (!old_) {
    return unlink(file_.c_str()) == 0 || errno == ENOENT;
  }
  return replaceFile(file_.c_str(), old_->data(), old_->size(), Durability::kFlushed);
}

// Writes all of them. When one fails, those before it are taken back.
void writeAll(const std::vector<Replacing>& databases) {
  std::size_t written = 0;
  try {
    for (; written < databases.size(); ++written) {
      databases[written].write();
    }
  } catch (const Failure& failure) {
    while (written > 0) {
      if (!databases[--written].takeBack()) {
        throw Failure(failure.exit(), std::string(failure.what()) +
                                          "; other areas are changed already: 'hearth batch "
                                          "--resume' finishes the change");
      }
    }
    removeNote();
    throw;
  }
}

// What is left to do of an interrupted change. Throws a Failure for a database that holds neither
// what it held before the change nor what it is to hold.
Snapshot restOf(Snapshot snapshot, bool force) {
  Snapshot rest;
  for (StoredDatabase& database : snapshot) {
    const std::string file = databaseFile(database.area);
    const std::string now = fingerprintOfFile(file);
    if (now == database.fingerprint()) {
      continue;
    }
    if (now != database.before && !force) {
      throw Failure(Exit::kConflict,
                    inQuotes(file) +
                        ": was changed after a change of several areas was interrupted: 'hearth "
                        "batch --resume --force' overwrites it, 'hearth batch --drop' gives up "
                        "the rest of the change");
    }
    rest.push_back(std::move(database));
  }
  return rest;
}

}  // namespace

FolderLock lockStore() {
  return FolderLock::alone(noteFile());
}

bool hasInterrupted() {
  return exists(noteFile());
}

void replaceDatabases(Snapshot& snapshot) {
  for (StoredDatabase& database : snapshot) {
    database.before = fingerprintOfFile(databaseFile(database.area));
  }
  snapshot.erase(std::remove_if(snapshot.begin(), snapshot.end(),
                                [](const StoredDatabase& database) {
                                  return database.before == database.fingerprint();
                                }),
                 snapshot.end());
  std::vector<Replacing> databases;
  databases.reserve(snapshot.size());
  for (const StoredDatabase& database : snapshot) {
    databases.emplace_back(database);
  }
  if (snapshot.size() > 1) {
    writeNote(snapshot);
  }
  writeAll(databases);
  if (snapshot.size() > 1) {
    removeNote();
  }
  for (Replacing& database : databases) {
    database.done();
  }
}

// Whoever made the note may have gone on and finished before this process got the lock.
void finishInterrupted(bool force) {
  const FolderLock store = lockStore();
  if (!hasInterrupted()) {
    return;
  }
  const std::string name = inQuotes(noteFile());
  Snapshot all = readSnapshot(readJson(noteFile())->jobj, kKind, name);
  std::vector<FolderLock> locks;
  for (const StoredDatabase& database : all) {
    locks.push_back(FolderLock::alone(databaseFile(database.area)));
  }
  Snapshot rest = restOf(std::move(all), force);
  const std::string count = counted(rest.size(), "area");
  std::vector<Replacing> databases;
  databases.reserve(rest.size());
  for (const StoredDatabase& database : rest) {
    databases.emplace_back(database);
    databases.back().write();
    databases.back().done();
  }
  removeNote();
  complain("note: a change of several areas was interrupted, and is now finished (" + count +
           " left to do)");
}

bool dropInterrupted() {
  const FolderLock store = lockStore();
  const bool isThere = hasInterrupted();
  if (isThere) {
    removeNote();
  }
  return isThere;
}

}  // namespace hearth::tool
