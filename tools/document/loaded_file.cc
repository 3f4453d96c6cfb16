// Loading keeps the file's text beside the document, and saving asks three things in this order:
// does the result conform to the area's schema, would the save drop anything that the text holds,
// and does the file still hold that text. Only then does the library save.
//
// An area is loaded by locking it in the library, as the backend does, and stays locked until it is
// saved or unloaded; a plain file is parsed into a handle of this object's own.
#include "tools/document/loaded_file.h"

#include <cerrno>
#include <cstring>
#include <optional>

#include "files/replace_file.h"
#include "hearth/json_data.h"
#include "hearth/local_db_ctrl.h"
#include "tools/document/database_check.h"
#include "tools/document/fingerprint.h"
#include "tools/document/history.h"
#include "tools/document/input.h"
#include "tools/document/transaction.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/output.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

constexpr char kSession[] = "default";

bool somethingIsSaved = false;

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
  if (Transaction* const transaction = Transaction::current();
      transaction != nullptr && chosen_.isArea) {
    staged_ = &transaction->area(chosen_.area);
    text_ = staged_->text;
    handle_ = staged_->document.get();
    return;
  }
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
  } else if (handle_ != nullptr && staged_ == nullptr) {
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

void LoadedFile::check(const SaveOptions& options) const {
  if (!options.noSchema && chosen_.isArea &&
      !refuseBreakingSchema(chosen_.area, *handle_, inQuotes(chosen_.name) + ": the result",
                            "nothing is saved, --no-schema saves all the same")) {
    noteUnguarded(chosen_.area);
  }
  if (!options.force) {
    refuseLosingText();
  }
}

void LoadedFile::save(const SaveOptions& options) {
  if (staged_ != nullptr) {
    staged_->isChanged = true;
    staged_->options.force = staged_->options.force || options.force;
    staged_->options.noSchema = staged_->options.noSchema || options.noSchema;
    return;
  }
  if (Transaction::current() != nullptr) {
    throw Failure(Exit::kUsage, inQuotes(chosen_.name) + ": only areas are changed together");
  }
  check(options);
  if (chosen_.isArea) {
    saveArea();
  } else {
    saveAs(chosen_.file, *handle_);
  }
}

// A document that says what the file says replaces nothing worth keeping.
void LoadedFile::saveArea() {
  const std::string after = fingerprintOf(View(root()));
  std::optional<KeptFile> kept;
  if (after != fingerprintOfText(text_)) {
    kept.emplace(chosen_.file, after);
  }
  handle_ = nullptr;  // a save ends the lock, whatever its result
  errno = 0;
  if (LocalDbCtrl::saveDbObject(static_cast<API_TYPE_T>(chosen_.area), kSession) != 0) {
    failToSave(chosen_.file, errno);
  }
  somethingIsSaved = true;
  if (kept) {
    kept->replaced();
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
  somethingIsSaved = true;
}

void saveText(const std::string& file, const std::string& text) {
  KeptFile kept(file, fingerprintOfText(text));
  if (!replaceFile(file.c_str(), text.data(), text.size(), Durability::kFlushed)) {
    failToSave(file, errno);
  }
  somethingIsSaved = true;
  kept.replaced();
}

bool hasSaved() {
  return somethingIsSaved;
}

}  // namespace hearth::tool
