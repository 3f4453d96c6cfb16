// What a crash leaves between the keeping and the save is a second name of the file that is still
// in place. It is known by that, is no former file, and goes with the next change.
#include "tools/document/history.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <utility>

#include "tools/terminal/output.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// A save follows symbolic links, so the former files lie beside the file that is replaced.
std::filesystem::path realFile(const std::string& file) {
  char resolved[PATH_MAX];
  return realpath(file.c_str(), resolved) != nullptr ? resolved : file;
}

std::filesystem::path historyOf(const std::filesystem::path& file) {
  return file.parent_path() / ".history";
}

std::size_t mostKept() {
  constexpr unsigned long kDefault = 10;
  constexpr unsigned long kMost = 1000;
  const char* const wanted = getenv("HEARTH_HISTORY");
  char* end = nullptr;
  const unsigned long count = wanted == nullptr ? kDefault : strtoul(wanted, &end, 10);
  return std::min(wanted != nullptr && (end == wanted || *end != '\0') ? kDefault : count, kMost);
}

// Reads what stands behind the database's name: ".12.1764000000.9f3c2a10aabbccdd".
bool readName(const std::string& end, FormerFile& former) {
  long long time = 0;
  char after[17] = "";
  int size = 0;
  if (std::sscanf(end.c_str(), ".%9lu.%18lld.%16[0-9a-f]%n", &former.number, &time, after, &size) !=
          3 ||
      static_cast<std::size_t>(size) != end.size()) {
    return false;
  }
  former.time = time;
  former.after = after;
  return true;
}

bool isSameFile(const std::string& one, const struct stat& other) {
  struct stat status {};
  return stat(one.c_str(), &status) == 0 && status.st_ino == other.st_ino &&
         status.st_dev == other.st_dev;
}

// All that is in the folder for this database, what a crash has left included.
std::vector<FormerFile> allOf(const std::filesystem::path& real) {
  std::vector<FormerFile> found;
  const std::string name = real.filename().string();
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(historyOf(real), error)) {
    const std::string itsName = entry.path().filename().string();
    FormerFile former{};
    if (itsName.rfind(name, 0) == 0 && readName(itsName.substr(name.size()), former)) {
      former.file = entry.path().string();
      found.push_back(former);
    }
  }
  std::sort(found.begin(), found.end(), [](const FormerFile& left, const FormerFile& right) {
    return left.number < right.number;
  });
  return found;
}

// Gives up the oldest until so many are left.
void thin(const std::filesystem::path& real, std::size_t most) {
  const std::vector<FormerFile> all = allOf(real);
  for (std::size_t i = 0; i + most < all.size(); ++i) {
    unlink(all[i].file.c_str());
  }
}

// A former file takes no more room than the file did, but a store that has room for only a few more
// files of this size needs it for itself.
bool hasRoom(const std::filesystem::path& real, const struct stat& status) {
  constexpr unsigned long long kFiles = 16;
  struct statvfs room {};
  return statvfs(real.parent_path().c_str(), &room) != 0 ||
         static_cast<unsigned long long>(room.f_bavail) * room.f_frsize >=
             kFiles * static_cast<unsigned long long>(status.st_size);
}

void noteLoss(const std::string& file, const char* why) {
  complain("note: " + inQuotes(file) + " is not kept, and this change cannot be undone: " + why);
}

}  // namespace

std::vector<FormerFile> formerFiles(const std::string& file) {
  const std::filesystem::path real = realFile(file);
  std::vector<FormerFile> all = allOf(real);
  struct stat current {};
  if (stat(real.c_str(), &current) == 0) {
    all.erase(
        std::remove_if(all.begin(), all.end(),
                       [&](const FormerFile& former) { return isSameFile(former.file, current); }),
        all.end());
  }
  return all;
}

// The new file must not get the number of one that is there, so leftovers are taken away first.
KeptFile::KeptFile(const std::string& file, const std::string& after) : file_(file) {
  const std::filesystem::path real = realFile(file);
  struct stat status {};
  const std::size_t most = mostKept();
  if (stat(real.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return;
  }
  for (const FormerFile& former : allOf(real)) {
    if (isSameFile(former.file, status)) {
      unlink(former.file.c_str());
    }
  }
  if (most == 0 || !hasRoom(real, status)) {
    thin(real, 0);
    if (most != 0) {
      noteLoss(file, "the device is almost full");
    }
    return;
  }
  const std::vector<FormerFile> all = allOf(real);
  const unsigned long number = all.empty() ? 1 : all.back().number + 1;
  const std::string former =
      (historyOf(real) / (real.filename().string() + "." + std::to_string(number) + "." +
                          std::to_string(time(nullptr)) + "." + after))
          .string();
  mkdir(historyOf(real).c_str(), 0700);
  if (link(real.c_str(), former.c_str()) != 0) {
    noteLoss(file, strerror(errno));
    return;
  }
  former_ = former;
}

KeptFile::KeptFile(KeptFile&& other) noexcept
    : file_(std::move(other.file_)),
      former_(std::exchange(other.former_, {})),
      isReplaced_(other.isReplaced_) {}

KeptFile::~KeptFile() {
  if (!former_.empty() && !isReplaced_) {
    unlink(former_.c_str());
  }
}

void KeptFile::replaced() {
  isReplaced_ = true;
  thin(realFile(file_), mostKept());
}

}  // namespace hearth::tool
