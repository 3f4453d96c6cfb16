// A document is read as json-c's own file reader reads it: with the parser's default depth, and
// passing over text behind the value. Unlike that reader, this one reads the file whole before it
// parses, never waits on a pipe or a device, and keeps no error text that threads would share.
#include "json/json_file.h"

#include <cerrno>
#include <utility>

#include "base/json_parser.h"
#include "base/read_file.h"
#include "base/status.h"
#include "json/depth.h"
#include "json/render.h"

namespace hearth {
namespace {

// Nothing can be parsed of a file that is too large or not regular: it counts as one without a
// value.
Reading outcomeOf(FileReading reading) {
  switch (reading) {
    case FileReading::kRead:
      return Reading::kValue;
    case FileReading::kMissing:
      return Reading::kMissing;
    case FileReading::kUnreadable:
      return Reading::kUnreadable;
    case FileReading::kNotRegular:
    case FileReading::kTooLarge:
      break;
  }
  return Reading::kNoValue;
}

}  // namespace

JsonFile findJsonFile(const char* path) {
  FileContents contents;
  const Reading reading = outcomeOf(contents.readFile(path));
  if (reading != Reading::kValue) {
    return {reading, nullptr};
  }
  ParsedJson parsed = parseJson({contents.data(), contents.size()});
  // Running out of memory says nothing about the document: another attempt may succeed.
  if (parsed.isOutOfMemory) {
    return {Reading::kUnreadable, nullptr};
  }
  return {parsed.value != nullptr ? Reading::kValue : Reading::kNoValue, std::move(parsed.value)};
}

json_object* readJsonFile(const char* path) {
  return findJsonFile(path).value.release();
}

bool replaceFileWithJson(const char* path, json_object* value, Durability durability) {
  if (value == nullptr || isNestedDeeperThan(value, kParserNesting)) {
    return failWith(EINVAL);
  }
  std::size_t size = 0;
  const char* const text = render(value, JSON_C_TO_STRING_PRETTY, size);
  return text != nullptr ? replaceFile(path, text, size, durability) : failWith(ENOMEM);
}

}  // namespace hearth
