// Reads a JSON document from a file whole, and replaces a file by a value's text.
#ifndef HEARTH_JSON_JSON_FILE_H
#define HEARTH_JSON_JSON_FILE_H

#include "base/json_ref.h"
#include "files/replace_file.h"

namespace hearth {

// Says how the reading of a document ended.
enum class Reading {
  kMissing,     // stat finds no file
  kUnreadable,  // it could not be opened or read, whatever it holds: rights, descriptors, memory,
                // the device; another attempt may succeed
  kNoValue,     // it does not parse, is too large, holds null, or is no regular file
  kValue
};

struct JsonFile {
  Reading reading = Reading::kMissing;
  JsonRef value;  // null but for kValue
};

// Reads the file at path; a null path leads to none.
[[nodiscard]] JsonFile findJsonFile(const char* path);

// The value in the file at path, with one reference that the caller owns; null for any reading but
// kValue.
[[nodiscard]] json_object* readJsonFile(const char* path);

// Replaces the file at path by the value's indented text, as replaceFile does. Refuses a null
// value, and one nested deeper than the parser would read back.
[[nodiscard]] bool replaceFileWithJson(const char* path, json_object* value, Durability durability);

}  // namespace hearth

#endif
