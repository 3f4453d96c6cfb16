// Loading keeps the file's text beside the document, and saving asks three things in this order:
// does the result conform to the area's schema, would the save drop anything that the text holds,
// and does the file still hold that text. Only then does the library save.
//
// An area is loaded by locking it in the library, as the backend does, and stays locked until it is
// saved or unloaded; a plain file is parsed into a handle of this object's own.
#include "tools/document/loaded_file.h"

#include <cerrno>
#include <cstring>

#include "hearth/json_data.h"
#include "hearth/local_db_ctrl.h"
#include "tools/document/input.h"
#include "tools/document/schema_check.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

constexpr char kSession[] = "default";

// Says why a save failed, from the errno that the library left: EINVAL stands for a document that
// could not be loaded again.
[[noreturn]] void failToSave(const std::string& file, int error) {
  throw Failure(Exit::kIo,
                inQuotes(file) + ": cannot be saved: " +
                    (error == EINVAL ? "nested deeper than 32 levels"
                                     : (error == 0 ? "unknown error" : strerror(error))) +
                    "; the file is as it was");
}

}  // namespace

// The library reads the file by itself and does not show its text, so the text is read before and
// after. When both are the same, it is what the library has read, and can be compared before a
// save.
LoadedFile::LoadedFile(AreaOrFile chosen) : chosen_(std::move(chosen)) {
  constexpr int kTries = 5;
  for (int i = 0; i < kTries; ++i) {
    text_ = readWhole(chosen_.file);
    load();
    if (readWhole(chosen_.file) == text_) {
      if (handle_ == nullptr || handle_->jobj == nullptr) {
        unload();
        static_cast<void>(parse(text_, chosen_.file));  // throws, saying what is wrong
        throw Failure(Exit::kIo, inQuotes(chosen_.file) + ": the library cannot load it");
      }
      return;
    }
    unload();
  }
  throw Failure(Exit::kConflict, inQuotes(chosen_.file) + ": changes faster than it can be read");
}

LoadedFile::~LoadedFile() {
  unload();
}

void LoadedFile::load() {
  if (!chosen_.isArea) {
    handle_ = JsonData::createObjectFromFile(chosen_.file.c_str());
    return;
  }
  LocalDbCtrl::init();
  handle_ = LocalDbCtrl::lockDbObject(chosen_.area, "", kSession);
}

void LoadedFile::unload() {
  if (!chosen_.isArea) {
    delete handle_;
  } else if (handle_ != nullptr) {
    LocalDbCtrl::unlockDbObject(chosen_.area, kSession);
  }
  handle_ = nullptr;
}

PathEnd LoadedFile::locate(const Path& path) const {
  PathEnd end{};
  if (!find(root(), path, end)) {
    explainMissing(path);
  }
  return end;
}

void LoadedFile::explainMissing(const Path& path) const {
  try {
    tool::explainMissing(root(), path);
  } catch (const Failure& failure) {
    throw Failure(failure.exit(), inQuotes(chosen_.name) + ": " + failure.what());
  }
}

void LoadedFile::save(const SaveOptions& options) {
  if (!options.noSchema && chosen_.isArea) {
    refuseBreakingSchema();
  }
  if (!options.force) {
    refuseLosingText();
  }
  errno = 0;
  if (!chosen_.isArea) {
    saveAs(chosen_.file, *handle_);
    return;
  }
  handle_ = nullptr;  // a save ends the lock, whatever its result
  if (LocalDbCtrl::saveDbObject(static_cast<API_TYPE_T>(chosen_.area), kSession) != 0) {
    failToSave(chosen_.file, errno);
  }
}

// An area without a schema of its database takes any document.
void LoadedFile::refuseBreakingSchema() const {
  const std::string schema = databaseSchemaFile(chosen_.area);
  if (!exists(schema)) {
    return;
  }
  const Verdict verdict = checkAgainst(*handle_, schema);
  if (!verdict.conforms) {
    throw Failure(Exit::kViolation,
                  inQuotes(chosen_.name) + ": the result " + verdict.text() +
                      "; nothing is saved, --no-schema saves all the same",
                  verdict.broken());
  }
}

// Text is lost in two ways: the parser never took it in as it is written (comments, -0 and the
// like), or somebody else wrote it since the document was loaded.
void LoadedFile::refuseLosingText() const {
  const std::string whyNot = whyNotPlainJson(text_);
  if (!whyNot.empty()) {
    throw Failure(Exit::kNo, inQuotes(chosen_.file) +
                                 ": a save would change what it was not asked to: " + whyNot +
                                 "; --force saves all the same");
  }
  if (readWhole(chosen_.file) != text_) {
    throw Failure(Exit::kConflict,
                  inQuotes(chosen_.file) +
                      ": was changed by somebody else meanwhile; nothing is saved: look again "
                      "and repeat, or --force to overwrite");
  }
}

void saveAs(const std::string& file, TreeMapObject& value) {
  errno = 0;
  if (JsonData::saveObjectToFile(file.c_str(), &value) != 0) {
    failToSave(file, errno);
  }
}

}  // namespace hearth::tool
