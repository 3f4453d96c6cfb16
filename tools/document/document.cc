#include "tools/document/document.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "hearth/json_data.h"
#include "hearth/local_db_ctrl.h"
#include "tools/document/area.h"
#include "tools/document/schema_check.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

constexpr char kSession[] = "default";

// The folder of the file that a save would replace, symbolic links followed.
std::string folderOf(const std::string& file) {
  char resolved[PATH_MAX];
  const std::string whole = realpath(file.c_str(), resolved) != nullptr ? resolved : file;
  const std::size_t slash = whole.rfind('/');
  return slash == std::string::npos ? "." : whole.substr(0, slash + 1);
}

[[noreturn]] void failToSave(const std::string& file, int error) {
  throw Failure(Exit::kIo,
                inQuotes(file) + ": cannot be saved: " +
                    (error == EINVAL ? "nested deeper than 32 levels"
                                     : (error == 0 ? "unknown error" : strerror(error))) +
                    "; the file is as it was");
}

}  // namespace

Target::Target(const std::string& text) : name(text), file(text) {
  isArea = findArea(text, area);
  if (isArea) {
    file = databaseFile(area);
  } else if (text.find_first_of("./") == std::string::npos && !exists(text)) {
    throw Failure(Exit::kUsage, "no area and no file " + inQuotes(text) +
                                    didYouMean(text, areaNames()) +
                                    " ('hearth areas' lists the areas)");
  }
}

// Where the file system has no such locks, the check before each save has to do.
FolderLock::FolderLock(const std::string& file)
    : fd_(open(folderOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  constexpr timespec kPause = {0, 50'000'000};
  constexpr int kTries = 100;
  for (int i = 0; flock(fd_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK; ++i) {
    if (i == kTries) {
      close(fd_);
      throw Failure(Exit::kConflict,
                    inQuotes(file) + ": another hearth command is editing this folder; try again");
    }
    nanosleep(&kPause, nullptr);
  }
}

FolderLock::~FolderLock() {
  if (fd_ >= 0) {
    close(fd_);
  }
}

// The text that is compared before a save must be the one that the library has read.
Document::Document(Target target) : target_(std::move(target)) {
  constexpr int kTries = 5;
  for (int i = 0; i < kTries; ++i) {
    text_ = readWhole(target_.file);
    load();
    if (readWhole(target_.file) == text_) {
      if (handle_ == nullptr || handle_->jobj == nullptr) {
        unload();
        static_cast<void>(parse(text_, target_.file));  // says what is wrong
        throw Failure(Exit::kIo, inQuotes(target_.file) + ": the library cannot load it");
      }
      return;
    }
    unload();
  }
  throw Failure(Exit::kConflict, inQuotes(target_.file) + ": changes faster than it can be read");
}

Document::~Document() {
  unload();
}

void Document::load() {
  if (!target_.isArea) {
    handle_ = JsonData::createObjectFromFile(target_.file.c_str());
    return;
  }
  LocalDbCtrl::init();
  handle_ = LocalDbCtrl::lockDbObject(target_.area, "", kSession);
}

void Document::unload() {
  if (!target_.isArea) {
    delete handle_;
  } else if (handle_ != nullptr) {
    LocalDbCtrl::unlockDbObject(target_.area, kSession);
  }
  handle_ = nullptr;
}

Place Document::locate(const Path& path) const {
  Place place{};
  if (!find(root(), path, place)) {
    explainMissing(path);
  }
  return place;
}

void Document::explainMissing(const Path& path) const {
  try {
    tool::explainMissing(root(), path);
  } catch (const Failure& failure) {
    throw Failure(failure.exit(), inQuotes(target_.name) + ": " + failure.what());
  }
}

void Document::save(const SaveOptions& options) {
  if (!options.noSchema && target_.isArea) {
    checkSchema();
  }
  if (!options.force) {
    const std::string loose = looseness(text_);
    if (!loose.empty()) {
      throw Failure(Exit::kNo, inQuotes(target_.file) +
                                   ": holds more than plain JSON, which a save would drop: " +
                                   loose + "; --force saves all the same");
    }
    if (readWhole(target_.file) != text_) {
      throw Failure(Exit::kConflict,
                    inQuotes(target_.file) +
                        ": was changed by somebody else meanwhile; nothing is saved: look again "
                        "and repeat, or --force to overwrite");
    }
  }
  errno = 0;
  if (!target_.isArea) {
    saveAs(target_.file, *handle_);
    return;
  }
  handle_ = nullptr;  // a save ends the lock, whatever its result
  if (LocalDbCtrl::saveDbObject(static_cast<API_TYPE_T>(target_.area), kSession) != 0) {
    failToSave(target_.file, errno);
  }
}

void Document::checkSchema() const {
  const std::string schema = databaseSchemaFile(target_.area);
  if (!exists(schema)) {
    return;
  }
  const Verdict verdict = checkAgainst(*handle_, schema);
  if (!verdict.conforms) {
    throw Failure(Exit::kNo, inQuotes(target_.name) + ": the result " + verdict.text() +
                                 "; nothing is saved, --no-schema saves all the same");
  }
}

void saveAs(const std::string& file, TreeMapObject& value) {
  errno = 0;
  if (JsonData::saveObjectToFile(file.c_str(), &value) != 0) {
    failToSave(file, errno);
  }
}

}  // namespace hearth::tool
