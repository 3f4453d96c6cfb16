#include "tools/document/input.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "base/json_parser.h"
#include "base/read_file.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

constexpr std::size_t kLargest = 256U << 20;

[[noreturn]] void failToRead(const std::string& file, const std::string& why) {
  throw Failure(Exit::kIo, (file == "-" ? "standard input" : inQuotes(file)) + ": " + why);
}

bool isFolder(const std::string& file) {
  struct stat status;
  return stat(file.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The text that a reading gave; a failure with the file's name for every other outcome.
std::string textOf(const FileContents& contents, FileReading reading, const std::string& file) {
  switch (reading) {
    case FileReading::kRead:
      return {contents.data(), contents.size()};
    case FileReading::kTooLarge:
      failToRead(file, "larger than 256 MiB: no document of a gateway is");
    case FileReading::kNotRegular:
      failToRead(file, isFolder(file)
                           ? "is a directory, not a document"
                           : "is no regular file; a command that takes - reads standard input");
    case FileReading::kMissing:
    case FileReading::kUnreadable:
      break;
  }
  failToRead(file, strerror(errno));
}

ParsedJson parsed(const std::string& text, int flags) {
  ParsedJson parsed = parseJson(text, flags);
  if (parsed.isOutOfMemory) {
    throw std::bad_alloc();
  }
  return parsed;
}

std::string placeOf(const std::string& text, std::size_t end) {
  const std::string_view before(text.data(), std::min(end, text.size()));
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const std::size_t start = before.rfind('\n') + 1;  // npos + 1 is 0
  return "line " + std::to_string(line) + ", column " +
         std::to_string(columns(before.substr(start)) + 1);
}

std::string explained(json_tokener_error error) {
  switch (error) {
    case json_tokener_continue:
      return "the text ends too early";
    case json_tokener_error_depth:
      return "nested deeper than 32 levels";
    default:
      return json_tokener_error_desc(error);
  }
}

}  // namespace

std::string readWhole(const std::string& file) {
  FileContents contents;
  const FileReading reading = file == "-" ? contents.readToEnd(STDIN_FILENO, 0, kLargest)
                                          : contents.readFile(file.c_str(), kLargest);
  return textOf(contents, reading, file);
}

Handle parse(const std::string& text, const std::string& name, bool mayBeNull) {
  ParsedJson document = parsed(text, 0);
  if (!document.isValid()) {
    throw Failure(Exit::kIo, (name == "-" ? "standard input" : inQuotes(name)) +
                                 ": not JSON: " + explained(document.error) + " (" +
                                 placeOf(text, document.end) + ")");
  }
  if (document.value == nullptr && !mayBeNull) {
    failToRead(name, "holds null, which is no document");
  }
  return std::make_unique<TreeMapObject>(document.value.release());
}

Handle readJson(const std::string& file) {
  return parse(readWhole(file), file);
}

std::string looseness(const std::string& text) {
  const ParsedJson document = parsed(text, JSON_TOKENER_STRICT | JSON_TOKENER_VALIDATE_UTF8);
  if (document.isValid()) {
    return "";
  }
  return explained(document.error) + " (" + placeOf(text, document.end) + ")";
}

}  // namespace hearth::tool
