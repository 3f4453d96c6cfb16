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

// A temporary in the folder that a descriptor names; it is removed at the end of its scope unless
// it has become the target.
class TemporaryFile {
 public:
  explicit TemporaryFile(int folder) : folder_(folder) {}
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // Makes the file, with this mode less the umask. False, with errno, when it cannot be made.
  [[nodiscard]] bool make(mode_t mode);

  // Gives it the target's name, in one step, in place of what had that name.
  [[nodiscard]] bool become(const char* target);

  int fd() const { return file_.get(); }
  // As it was made.
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

// Removes the temporaries in the folder that nobody holds. True when no other is left.
bool removeStraysIn(int folder);

// The same, unless nothing has come into the folder or left it since expectNoStrays was called: so
// a save does not list its folder every time, and still finds what another process's crash left.
bool removeStraysIfChanged(int folder);
void expectNoStrays(int folder);

}  // namespace hearth

#endif
