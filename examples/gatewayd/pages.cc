#include "pages.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>

#include "server_limits.h"

namespace {

namespace fs = std::filesystem;

struct Type {
  const char* ending;
  const char* name;
};

constexpr Type kTypes[] = {
    {".html", "text/html; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".mjs", "text/javascript; charset=utf-8"},
    {".json", "application/json"},
    {".svg", "image/svg+xml"},
    {".png", "image/png"},
};

// Null for a file that is not served.
const char* typeOf(const fs::path& file) {
  for (const Type& type : kTypes) {
    if (file.extension() == type.ending && file.filename().string()[0] != '.') {
      return type.name;
    }
  }
  return nullptr;
}

bool readFile(const fs::path& file, std::string& contents) {
  const int fd = open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
  char part[4096];
  ssize_t got = fd < 0 ? -1 : 1;
  while (got > 0 && contents.size() <= limits::kPages) {
    got = ::read(fd, part, sizeof part);
    contents.append(part, got > 0 ? static_cast<std::size_t>(got) : 0);
  }
  if (fd >= 0) {
    close(fd);
  }
  return got == 0;
}

}  // namespace

bool Pages::read(const std::string& folder) {
  std::size_t size = 0;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder, error)) {
    const char* const type = typeOf(entry.path());
    if (type == nullptr || entry.is_symlink(error) || !entry.is_regular_file(error)) {
      continue;
    }
    Page page = {type, ""};
    if (!readFile(entry.path(), page.contents)) {
      return false;
    }
    size += page.contents.size();
    pages_["/" + entry.path().lexically_relative(folder).generic_string()] = std::move(page);
  }
  return !error && size <= limits::kPages && pages_.count("/index.html") != 0;
}

Reply Pages::answer(const Request& request) const {
  const auto found = pages_.find(request.path == "/" ? "/index.html" : request.path);
  if (found == pages_.end()) {
    return refusal(404, "there is no such page");
  }
  Reply reply;
  reply.status = 200;
  reply.body = found->second.contents;
  reply.type = found->second.type;
  return reply;
}
