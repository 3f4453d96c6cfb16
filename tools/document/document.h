// The document that a command works on: an area's database, or any JSON file.
//
// Reading goes through the library's lock and load, writing through its save, which replaces the
// file in one step. The backend takes no lock on the file, so an edit is guarded in two ways:
// hearth commands exclude each other by an advisory lock on the folder, and a save is refused when
// the file no longer holds what the edit began with.
#ifndef HEARTH_TOOLS_DOCUMENT_DOCUMENT_H
#define HEARTH_TOOLS_DOCUMENT_DOCUMENT_H

#include <string>

#include "hearth/tree_map_object.h"
#include "tools/document/input.h"
#include "tools/document/path.h"

namespace hearth::tool {

// An area, or else a file.
struct Target {
  // "wifi" is the area, "./wifi" a file. Throws a Failure for text that is neither.
  explicit Target(const std::string& text);

  std::string name;
  std::string file;
  unsigned int area = 0;
  bool isArea = false;
};

// An advisory lock on the folder of a file, held against other hearth commands.
class FolderLock {
 public:
  // Waits a few seconds for another command; then throws a Failure.
  explicit FolderLock(const std::string& file);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  int fd_;
};

// What a save may be made to overlook.
struct SaveOptions {
  bool force = false;     // the file has changed meanwhile, or holds what a save drops
  bool noSchema = false;  // the result does not conform to the area's schema
};

class Document {
 public:
  // Throws a Failure when it cannot be loaded.
  explicit Document(Target target);
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  const Target& target() const { return target_; }
  const std::string& text() const { return text_; }
  TreeMapObject& handle() const { return *handle_; }
  json_object* root() const { return handle_->jobj; }

  // As the functions of path.h, with the document's name in the message.
  Place locate(const Path& path) const;
  [[noreturn]] void explainMissing(const Path& path) const;

  // Throws a Failure, with the file as it was, when it cannot or must not be saved.
  void save(const SaveOptions& options);

 private:
  void load();
  void unload();
  void checkSchema() const;

  const Target target_;
  std::string text_;  // of the file, when it was loaded
  TreeMapObject* handle_ = nullptr;
};

// Saves a value as a file, in one step. Throws a Failure with the file as it was.
void saveAs(const std::string& file, TreeMapObject& value);

}  // namespace hearth::tool

#endif
