// The document that a command works on, loaded from an area's database or from any JSON file.
//
// Reading goes through the library's lock and load, writing through its save, which replaces the
// file in one step. The backend takes no lock on the file, so an edit is guarded in two ways:
// hearth commands exclude each other by a FolderLock, and a save is refused when the file no longer
// holds what the edit began with.
#ifndef HEARTH_TOOLS_DOCUMENT_LOADED_FILE_H
#define HEARTH_TOOLS_DOCUMENT_LOADED_FILE_H

#include <sys/stat.h>

#include <string>

#include "hearth/tree_map_object.h"
#include "tools/document/area.h"
#include "tools/document/path.h"

namespace hearth::tool {

// The checks that a user may have a save skip.
struct SaveOptions {
  bool force = false;     // the file has changed meanwhile, or holds what a save drops
  bool noSchema = false;  // the result does not conform to the area's schema
};

struct StagedArea;

class LoadedFile {
 public:
  // Throws a Failure when it cannot be loaded.
  explicit LoadedFile(AreaOrFile chosen);
  ~LoadedFile();
  LoadedFile(const LoadedFile&) = delete;
  LoadedFile& operator=(const LoadedFile&) = delete;

  const std::string& text() const { return text_; }
  TreeMapObject& handle() const { return *handle_; }
  json_object* root() const { return handle_->jobj; }

  // Where the path leads. Throws a Failure as explainMissing does when nothing is there.
  PathEnd locate(const Path& path) const;

  // As explainMissing of path.h, with the name of the area or file in front of the message.
  [[noreturn]] void explainMissing(const Path& path) const;

  // Throws a Failure when the document must not be saved: the first half of a save. Notes that an
  // area without a schema is not checked.
  void check(const SaveOptions& options) const;

  // Saves the document, and keeps the former file of an area (history.h); to be called once, for of
  // an area the library takes it back. Throws a Failure, with the file as it was, when it cannot or
  // must not be saved. Inside a transaction nothing is saved or checked before its end, and only
  // areas can be changed.
  void save(const SaveOptions& options);

 private:
  void load();
  void unload();
  void saveArea();
  void refuseLosingText() const;

  const AreaOrFile chosen_;
  std::string text_;  // of the file, when it was loaded
  // An area's belongs to the library, or to the transaction, a file's to this object.
  TreeMapObject* handle_ = nullptr;
  StagedArea* staged_ = nullptr;  // of an area inside a transaction; else null
};

// Saves a value as a file, in one step. Throws a Failure with the file as it was.
void saveAs(const std::string& file, TreeMapObject& value);

// Saves a text as an area's database, byte by byte and in one step, and keeps the former file.
// Throws a Failure with the file as it was.
void saveText(const std::string& file, const std::string& text);

// True when this process has saved anything: a failure to print must then say so.
[[nodiscard]] bool hasSaved();

// While it exists, files that are made get at most these permissions.
class MadeWithMode {
 public:
  explicit MadeWithMode(mode_t mode) : mask_(umask(0777U & ~mode)) {
    umask(mask_ | (0777U & ~mode));
  }
  ~MadeWithMode() { umask(mask_); }
  MadeWithMode(const MadeWithMode&) = delete;
  MadeWithMode& operator=(const MadeWithMode&) = delete;

 private:
  const mode_t mask_;
};

}  // namespace hearth::tool

#endif
