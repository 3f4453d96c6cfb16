// Replaces a file's contents in one step, so that a reader, a crash or a power cut meets the old
// contents or the new ones, never a part. Only the log and, where no replacement is possible, the
// login records are written otherwise.
#ifndef HEARTH_FILES_REPLACE_FILE_H
#define HEARTH_FILES_REPLACE_FILE_H

#include <cstddef>

namespace hearth {

// kFlushed: the contents have reached the device when the call returns. kUnflushed: the system
// writes them when it likes.
enum class Durability { kFlushed, kUnflushed };

// Replaces the file at path, or makes it.
// True: every reader finds the new contents from now on. They survive a power cut if they are
// flushed; should a failing device refuse the last flush, of the folder, then a power cut may bring
// back the old contents, whole.
// False: the file holds what it held, nothing is left beside it, and errno says why. Anything but a
// regular file (a device, a pipe) is written straight, and may have taken a part.
// An existing file keeps its mode and owner; where this process may not give the new file away, the
// new owner is this process's, and the mode is narrowed so that nobody gains access. A new file is
// 0644 less the umask. A symbolic link keeps pointing: the file it leads to is replaced, or made. A
// file that this process may not write, or whose folder takes no new files, is not replaced. Of a
// file with several hard links, the name at path gets the new contents, and the others keep the
// old. Ownership: the data is only read. Threads: any; of two replacements of one file, the later
// wins, whole.
[[nodiscard]] bool replaceFile(const char* path, const char* data, std::size_t size,
                               Durability durability);

// Removes the temporary files that crashes have left in the folder of path, whatever file they were
// for; those of saves in progress stay. The first replacement in a folder does the same.
// Failure: a file that cannot be removed stays, unreported; a null path does nothing. Threads: any.
void removeStrayTemporaries(const char* path);

}  // namespace hearth

#endif
