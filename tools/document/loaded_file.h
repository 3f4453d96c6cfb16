// The document that a command works on, loaded from an area's database or from any JSON file.
//
// Reading goes through the library's lock and load, writing through its save, which replaces the
// file in one step. The backend takes no lock on the file, so an edit is guarded in two ways:
// hearth commands exclude each other by a FolderLock, and a save is refused when the file no longer
// holds what the edit began with.
#ifndef HEARTH_TOOLS_DOCUMENT_LOADED_FILE_H
#define HEARTH_TOOLS_DOCUMENT_LOADED_FILE_H

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

  // Saves the document; to be called once, for of an area the library takes it back. Throws a
  // Failure, with the file as it was, when it cannot or must not be saved.
  void save(const SaveOptions& options);

 private:
  void load();
  void unload();
  void refuseBreakingSchema() const;
  void refuseLosingText() const;

  const AreaOrFile chosen_;
  std::string text_;                 // of the file, when it was loaded
  TreeMapObject* handle_ = nullptr;  // an area's belongs to the library, a file's to this object
};

// Saves a value as a file, in one step. Throws a Failure with the file as it was.
void saveAs(const std::string& file, TreeMapObject& value);

}  // namespace hearth::tool

#endif
