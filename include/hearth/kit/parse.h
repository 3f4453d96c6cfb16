// Parsing with a reason: which line, which column, what was expected there.
//
//   hearth::Result<hearth::Value> body = hearth::parse(request.body);
//   if (!body) {
//     return badRequest(body.failure().sentence);  // line 3, column 7: expected "," or "}", but
//     ...
//   }
//
// What is read is JSON as its standard has it, in UTF-8, and nothing json-c lets through beside: no
// comments, no NaN, no leading zeros, no text behind the value, no half of a surrogate pair.
// Refused as well is what would not be kept as it was written: an integer beyond 64 bits, a
// fraction too large for a double, a member whose name has a NUL, and, unless the options allow it,
// a member that stands twice. (JsonData::createObject and createObjectFromFile read as json-c
// does.)
//
// Sentences name what is wrong, never the text itself, which may hold a secret.
// Threads: any.
// Ownership: the value is the caller's.
// Cost: the text is walked twice, once to check it and once by json-c to make the value.
#ifndef HEARTH_KIT_PARSE_H
#define HEARTH_KIT_PARSE_H

#include <fcntl.h>
#include <json-c/json.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "hearth/kit/handle.h"
#include "hearth/kit/json_check.h"
#include "hearth/kit/result.h"
#include "hearth/kit/text.h"
#include "hearth/kit/walk.h"

namespace hearth {

struct ParseOptions {
  bool allowsDuplicates = false;  // the last of members with one name counts, as for json-c
};

namespace detail {

// The members of all objects in a value that the parser has read.
inline std::size_t countMembers(View value) {
  std::size_t count = members(value).size();
  for (const Member& member : members(value)) {
    count += countMembers(member.value);
  }
  for (const View element : elements(value)) {
    count += countMembers(element);
  }
  return count;
}

// The value of a text that has been checked.
inline Result<Value> made(std::string_view checked) {
  struct Free {
    void operator()(json_tokener* tokener) const { json_tokener_free(tokener); }
  };
  const std::unique_ptr<json_tokener, Free> tokener(json_tokener_new());
  if (tokener == nullptr) {
    return failure(Fault::kNoMemory, "there is no memory for the parser");
  }
  // The parser takes a number for whole only when something follows it.
  errno = 0;
  Value value(
      json_tokener_parse_ex(tokener.get(), checked.data(), static_cast<int>(checked.size())));
  if (json_tokener_get_error(tokener.get()) == json_tokener_continue) {
    value = Value(json_tokener_parse_ex(tokener.get(), "", 1));
  }
  if (json_tokener_get_error(tokener.get()) != json_tokener_success || errno == ENOMEM) {
    return failure(Fault::kNoMemory, "there is no memory for the value");
  }
  return value;
}

struct CloseFile {
  explicit CloseFile(int opened) : fd(opened) {}
  ~CloseFile() {
    if (fd >= 0) {
      close(fd);
    }
  }
  CloseFile(const CloseFile&) = delete;
  CloseFile& operator=(const CloseFile&) = delete;
  const int fd;
};

// Only regular files are opened: a device may do something by itself, a pipe may block.
inline Result<std::string> contentsOf(Name file) {
  const auto refused = [&file](const char* what) {
    return failure(Fault::kNoFile, std::string(file.get()) + ": " + what);
  };
  if (file.isEmpty()) {
    return failure(Fault::kBadArgument, "the file's name is null, empty, or has a NUL inside");
  }
  struct stat status = {};
  if (stat(file.get(), &status) != 0) {
    return refused(std::strerror(errno));
  }
  if (!S_ISREG(status.st_mode)) {
    return refused("no regular file");
  }
  const CloseFile opened(open(file.get(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (opened.fd < 0) {
    return refused(std::strerror(errno));
  }
  std::string contents;
  char part[4096];
  for (;;) {
    const ssize_t got = ::read(opened.fd, part, sizeof part);
    if (got == 0) {
      return contents;
    }
    if (got < 0 && errno != EINTR) {
      return refused(std::strerror(errno));
    }
    if (got > 0) {
      contents.append(part, static_cast<std::size_t>(got));
    }
    if (contents.size() > static_cast<std::size_t>(INT_MAX / 2)) {
      return refused("the file is too large");
    }
  }
}

}  // namespace detail

// The value that the text stands for; an empty Value for null.
// Failure: kBadText, with line and column; kNoMemory.
inline Result<Value> parse(Text text, const ParseOptions& options = {}) {
  if (text.view().size() > static_cast<std::size_t>(INT_MAX / 2)) {
    return detail::failure(Fault::kBadText, "the text is too long");
  }
  detail::JsonCheck check(text.view(), false);
  if (!check.check()) {
    return check.reason();
  }
  Result<Value> value = detail::made(text.view());
  // json-c keeps one of several members with one name: it then has fewer than were written.
  if (value && !options.allowsDuplicates && detail::countMembers(*value) != check.members()) {
    detail::JsonCheck search(text.view(), true);
    static_cast<void>(search.check());
    return search.reason();
  }
  return value;
}

// The value in a file.
// Failure: as parse, the sentence then begins with the file's name; kNoFile when there is no such
// file, it is no regular one or cannot be read; kBadArgument for a name that is none.
inline Result<Value> parseFile(Name file, const ParseOptions& options = {}) {
  const Result<std::string> contents = detail::contentsOf(file);
  if (!contents) {
    return contents.failure();
  }
  Result<Value> value = parse(*contents, options);
  if (value) {
    return value;
  }
  Failure failure = value.failure();
  failure.sentence.insert(0, std::string(file.get()) + ": ");
  return failure;
}

}  // namespace hearth

#endif
