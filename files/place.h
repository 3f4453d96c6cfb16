// The place of a file: its folder, held open, and its name there. Following a path to its place
// once means that later steps (write beside it, rename over it) work on one folder, whatever
// happens to the path meanwhile.
#ifndef HEARTH_FILES_PLACE_H
#define HEARTH_FILES_PLACE_H

#include <sys/stat.h>

#include <climits>

#include "base/unique_fd.h"

namespace hearth {

class Place {
 public:
  // Finds the place that the path leads to, through the symbolic links at its end. The last link
  // may lead to a name that does not exist yet. False, with errno, when the path leads to no
  // folder, its links go in circles, or the system refuses to follow them.
  [[nodiscard]] bool find(const char* path);

  // Finds the path's folder and keeps the name, without looking at what has that name. False, with
  // errno, when the path leads to no folder or is too long.
  [[nodiscard]] bool enter(const char* path);

  int folder() const { return folder_.get(); }
  const char* name() const { return name_; }

  // After find: true when no file has the name yet.
  bool isNew() const { return isNew_; }
  // After find: the status of the file that has the name. Requires !isNew().
  const struct stat& status() const { return status_; }

 private:
  static constexpr int kMaxLinks = 40;

  [[nodiscard]] bool look();
  [[nodiscard]] bool follow();
  bool isLink() const { return !isNew_ && S_ISLNK(status_.st_mode); }

  UniqueFd folder_{};
  char name_[NAME_MAX + 1] = "";
  bool isNew_ = false;
  struct stat status_ {};
};

}  // namespace hearth

#endif
