// Reading and parsing are the library's own, from base/; what is added here is the message that a
// person needs: which file, what is wrong with it, and for JSON the line and column.
//
// A text is parsed loosely, as the library does; whether it holds anything that the value does not
// is asked in plain_json.cc.
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

constexpr std::size_t kMostBytes = 256U << 20;

// "-" in messages is what it stands for.
[[noreturn]] void failToRead(const std::string& file, const std::string& why) {
  throw Failure(Exit::kIo, (file == "-" ? "standard input" : inQuotes(file)) + ": " + why);
}

// Tells which of the things that are no regular files a file is.
bool isFolder(const std::string& file) {
  struct stat status;
  return stat(file.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The text that was read. Throws a Failure with the file's name for every other outcome.
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

// Where memory runs out nothing is known about the text, so that is no answer about it.
ParsedJson parseInMemory(const std::string& text) {
  ParsedJson parsed = parseJson(text);
  if (parsed.isOutOfMemory) {
    throw std::bad_alloc();
  }
  return parsed;
}

// Names the position `end` of the text as editors do, from 1, columns in characters.
std::string lineAndColumn(const std::string& text, std::size_t end) {
  const std::string_view before(text.data(), std::min(end, text.size()));
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const std::size_t start = before.rfind('\n') + 1;  // npos + 1 is 0
  return "line " + std::to_string(line) + ", column " +
         std::to_string(columns(before.substr(start)) + 1);
}

// json-c's words serve for all but two errors: a text that ends inside a value is to json-c one
// that may go on, and the depth is more useful with its number.
std::string inWords(json_tokener_error error) {
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
  const FileReading reading = file == "-" ? contents.readToEnd(STDIN_FILENO, 0, kMostBytes)
                                          : contents.readFile(file.c_str(), kMostBytes);
  return textOf(contents, reading, file);
}

Handle parse(const std::string& text, const std::string& name, bool mayBeNull) {
  ParsedJson document = parseInMemory(text);
  if (!document.isValid()) {
    throw Failure(Exit::kIo, (name == "-" ? "standard input" : inQuotes(name)) +
                                 ": not JSON: " + inWords(document.error) + " (" +
                                 lineAndColumn(text, document.end) + ")");
  }
  if (document.value == nullptr && !mayBeNull) {
    failToRead(name, "holds null, which is no document");
  }
  return std::make_unique<TreeMapObject>(document.value.release());
}

Handle readJson(const std::string& file) {
  return parse(readWhole(file), file);
}

}  // namespace hearth::tool
