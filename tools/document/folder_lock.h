// Keeps edits by other hearth commands, and by backends that use the kit, out while one edits a
// file.
#ifndef HEARTH_TOOLS_DOCUMENT_FOLDER_LOCK_H
#define HEARTH_TOOLS_DOCUMENT_FOLDER_LOCK_H

#include <string>

#include "base/unique_fd.h"

namespace hearth::tool {

// Advisory locks (flock) on the folder of a file, held from construction to the end of the scope.
// The folder is locked and not the file, because each save puts a new file in the old one's place.
// It is the lock that hearth::Change takes of an area. Where the file is a symbolic link, the
// folder of the file that it leads to is locked too.
class FolderLock {
 public:
  // For an edit: finishes first what was interrupted in the data location (replacement.h). Inside a
  // transaction, which holds its locks to its own end, the transaction takes the lock.
  // Waits a few seconds for another holder; then throws a Failure. Takes no lock where the folder
  // cannot be opened or its file system has none: there the comparison before each save must do.
  explicit FolderLock(const std::string& file);

  // The lock alone, with the same wait.
  static FolderLock alone(const std::string& file);

 private:
  FolderLock() = default;
  void take(const std::string& file);

  UniqueFd folder_;  // of the file's name
  UniqueFd target_;  // of the file itself, where that is another one
};

}  // namespace hearth::tool

#endif
