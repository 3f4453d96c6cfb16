#include "tools/store/folders.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "base/unique_fd.h"
#include "files/replace_file.h"
#include "tools/document/area.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {

// The name of a new folder stands in the folder above it, so that one is flushed.
void makeFolder(const std::string& path) {
  struct stat status {};
  if (path.empty() || (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode))) {
    return;
  }
  const std::string above = std::filesystem::path(path).parent_path().string();
  makeFolder(above == path ? "" : above);
  if (mkdir(path.c_str(), 0755) != 0 && errno != EEXIST) {
    throw Failure(Exit::kIo, inQuotes(path) + ": cannot be made: " + strerror(errno));
  }
  if (stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
    throw Failure(Exit::kIo, inQuotes(path) + ": is no folder");
  }
  const UniqueFd folder(
      open(above.empty() ? "." : above.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  static_cast<void>(fsync(folder.get()));
}

bool makeFile(const std::string& file, const std::string& text) {
  if (exists(file)) {
    return false;
  }
  if (!replaceFile(file.c_str(), text.data(), text.size(), Durability::kFlushed)) {
    throw Failure(Exit::kIo, inQuotes(file) + ": cannot be made: " + strerror(errno));
  }
  return true;
}

}  // namespace hearth::tool
