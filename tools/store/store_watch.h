// Waits until something may have changed in folders.
//
// The kernel's word (inotify) is only a reason to look: who waits compares the files with what it
// knows. So nothing is lost when too much happens at once, when a folder is replaced by another
// one, or where the kernel says nothing at all: there each second is a reason to look.
#ifndef HEARTH_TOOLS_STORE_STORE_WATCH_H
#define HEARTH_TOOLS_STORE_STORE_WATCH_H

#include <map>
#include <string>
#include <vector>

#include "base/unique_fd.h"

namespace hearth::tool {

class StoreWatch {
 public:
  explicit StoreWatch(const std::vector<std::string>& folders);

  // Waits for a reason to look. False when nobody reads the output any more.
  [[nodiscard]] bool wait(int output);

 private:
  void watchFolders();

  UniqueFd events_;                   // of inotify; none where there is none to be had
  std::map<std::string, int> watch_;  // of each folder, -1 while it is not there
};

}  // namespace hearth::tool

#endif
