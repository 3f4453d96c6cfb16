#include "tools/store/store_watch.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace hearth::tool {

StoreWatch::StoreWatch(const std::vector<std::string>& folders)
    : events_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
  for (const std::string& folder : folders) {
    watch_[folder] = -1;
  }
  watchFolders();
}

// A folder that has come back under its name is another one, with a watch of its own.
void StoreWatch::watchFolders() {
  constexpr uint32_t kReasons = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE |
                                IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
  for (auto& [folder, watch] : watch_) {
    const int now = inotify_add_watch(events_.get(), folder.c_str(), kReasons);
    if (watch >= 0 && watch != now) {
      inotify_rm_watch(events_.get(), watch);  // fails for a folder that was removed
    }
    watch = now;
  }
}

// What the events say is not read: any of them is a reason to look at all files.
bool StoreWatch::wait(int output) {
  constexpr int kLongest = 1000;  // milliseconds
  pollfd waits[] = {{events_.get(), POLLIN, 0}, {output, 0, 0}};
  poll(waits, 2, kLongest);
  char ignored[4096];
  while (read(events_.get(), ignored, sizeof(ignored)) > 0) {
  }
  watchFolders();
  return waits[1].revents == 0;
}

}  // namespace hearth::tool
