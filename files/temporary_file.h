// The temporary files that replaceFile writes before it renames them: ".hearth-", 16 random
// hexadecimal digits, ".tmp", in the folder of the file that they are to replace.
//
// A temporary is locked (flock) from its making to its end. The lock dies with its process, so a
// temporary whose lock can be taken is what a crash has left behind: no age has to be guessed, and
// a save in progress, in any thread or process, is never disturbed.
#ifndef HEARTH_FILES_TEMPORARY_FILE_H
#define HEARTH_FILES_TEMPORARY_FILE_H

#include <sys/stat.h>

#include "base/unique_fd.h"

namespace hearth {

// A temporary file in the folder of a descriptor, which must stay open as long as it lives. It is
// removed at the end of its scope unless it has become another file.
class TemporaryFile {
 public:
  explicit TemporaryFile(int folder) : folder_(folder) {}
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // Makes the file, with this mode less the umask. False, with errno, when it cannot be made.
  [[nodiscard]] bool make(mode_t mode);

  // Renames it, in one step, over the file that has this name. False, with errno, when the system
  // refuses.
  [[nodiscard]] bool become(const char* name);

  int fd() const { return file_.get(); }
  // The status as make() found it.
  const struct stat& status() const { return status_; }

 private:
  static constexpr int kNameSize = 8 + 16 + 4;

  enum class Outcome { kMade, kFailed, kTaken };
  Outcome tryToMake(mode_t mode);

  const int folder_;
  UniqueFd file_;
  struct stat status_ {};
  char name_[kNameSize + 1] = "";
};

// Removes the temporaries in the folder that nobody holds. True when no temporary is left there.
bool removeStraysIn(int folder);

// Skips the search if the folder's mtime is unchanged since expectNoStrays(). So a save does not
// list its folder every time, and still finds what another process's crash has left.
bool removeStraysIfChanged(int folder);

// Notes that the folder holds no temporary now.
void expectNoStrays(int folder);

}  // namespace hearth

#endif
