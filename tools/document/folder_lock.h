// Keeps edits by other hearth commands out while one edits a file.
#ifndef HEARTH_TOOLS_DOCUMENT_FOLDER_LOCK_H
#define HEARTH_TOOLS_DOCUMENT_FOLDER_LOCK_H

#include <string>

#include "base/unique_fd.h"

namespace hearth::tool {

// An advisory lock on the folder of a file, held from construction to the end of its scope. The
// folder is locked and not the file, because each save puts a new file in the old one's place.
class FolderLock {
 public:
  // Waits a few seconds for another command; then throws a Failure. Takes no lock where the folder
  // cannot be opened or its file system has none: there the comparison before each save must do.
  explicit FolderLock(const std::string& file);

 private:
  const UniqueFd folder_;
};

}  // namespace hearth::tool

#endif
