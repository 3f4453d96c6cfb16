// Documents are read as json-c's own file reader reads them (the parser's default depth, text
// behind the value passed over), but whole and at once, without ever waiting, and without that
// reader's shared error text.
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
