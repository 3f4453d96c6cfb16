#include "tools/input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/failure.h"
#include "tools/text.h"

namespace hearth::tool {
namespace {

constexpr std::size_t kLargest = 256U << 20;

[[noreturn]] void failToRead(const std::string& file, const std::string& why) {
  throw Failure(Exit::kIo, (file == "-" ? "standard input" : inQuotes(file)) + ": " + why);
}

class File {
 public:
  explicit File(const std::string& path)
      : fd_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
  ~File() { close(fd_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  int fd() const { return fd_; }

 private:
  int fd_;
};

std::string readToEnd(int fd, const std::string& file) {
  std::string text;
  for (;;) {
    char block[65536];
    const ssize_t got = read(fd, block, sizeof(block));
    if (got == 0) {
      return text;
    }
    if (got < 0 && errno != EINTR) {
      failToRead(file, strerror(errno));
    }
    text.append(block, static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (text.size() > kLargest) {
      failToRead(file, "larger than 256 MiB: no document of a gateway is");
    }
  }
}

struct FreeTokener {
  void operator()(json_tokener* tokener) const { json_tokener_free(tokener); }
};

// One parse of a text: its value, or what is wrong and where.
struct Parse {
  Parse(const std::string& text, int flags);

  Handle handle;
  json_tokener_error error = json_tokener_success;
  std::size_t end = 0;
};

Parse::Parse(const std::string& text, int flags) {
  const std::unique_ptr<json_tokener, FreeTokener> tokener(json_tokener_new());
  if (tokener == nullptr) {
    throw std::bad_alloc();
  }
  json_tokener_set_flags(tokener.get(), flags);
  json_object* value =
      json_tokener_parse_ex(tokener.get(), text.c_str(), static_cast<int>(text.size()));
  end = json_tokener_get_parse_end(tokener.get());
  error = json_tokener_get_error(tokener.get());
  if (error == json_tokener_continue) {  // the end of the text may be what ends a number
    value = json_tokener_parse_ex(tokener.get(), "", 1);
    error = json_tokener_get_error(tokener.get());
  }
  handle = std::make_unique<TreeMapObject>(value);
}

std::string placeOf(const std::string& text, std::size_t end) {
  const std::string_view before(text.data(), std::min(end, text.size()));
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const std::size_t start = before.rfind('\n') + 1;  // npos + 1 is 0
  return "line " + std::to_string(line) + ", column " +
         std::to_string(columns(before.substr(start)) + 1);
}

std::string explained(const Parse& parse) {
  switch (parse.error) {
    case json_tokener_continue:
      return "the text ends too early";
    case json_tokener_error_depth:
      return "nested deeper than 32 levels";
    default:
      return json_tokener_error_desc(parse.error);
  }
}

}  // namespace

std::string readWhole(const std::string& file) {
  if (file == "-") {
    return readToEnd(STDIN_FILENO, file);
  }
  const File opened(file);
  struct stat status;
  if (opened.fd() < 0 || fstat(opened.fd(), &status) != 0) {
    failToRead(file, strerror(errno));
  }
  if (S_ISDIR(status.st_mode)) {
    failToRead(file, "is a directory, not a document");
  }
  if (!S_ISREG(status.st_mode)) {
    failToRead(file, "is no regular file; a command that takes - reads standard input");
  }
  return readToEnd(opened.fd(), file);
}

Handle parse(const std::string& text, const std::string& name, bool mayBeNull) {
  Parse parse(text, 0);
  if (parse.error != json_tokener_success) {
    throw Failure(Exit::kIo, (name == "-" ? "standard input" : inQuotes(name)) + ": not JSON: " +
                                 explained(parse) + " (" + placeOf(text, parse.end) + ")");
  }
  if (parse.handle->jobj == nullptr && !mayBeNull) {
    failToRead(name, "holds null, which is no document");
  }
  return std::move(parse.handle);
}

Handle readJson(const std::string& file) {
  return parse(readWhole(file), file);
}

std::string looseness(const std::string& text) {
  const Parse parse(text, JSON_TOKENER_STRICT | JSON_TOKENER_VALIDATE_UTF8);
  if (parse.error == json_tokener_success) {
    return "";
  }
  return explained(parse) + " (" + placeOf(text, parse.end) + ")";
}

}  // namespace hearth::tool
