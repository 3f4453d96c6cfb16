// The one reader of JSON files.
#ifndef HEARTH_JSON_FILE_READ_H
#define HEARTH_JSON_FILE_READ_H

#include "json/json_ref.h"

namespace hearth {

// What became of reading a file.
enum class Reading {
  kMissing,     // stat finds no file
  kUnreadable,  // it could not be opened or read, whatever it holds: rights, descriptors, memory,
                // the device; another attempt may succeed
  kNoValue,  // it does not parse, is too large, holds null, or is no regular file
  kValue
};

struct JsonFile {
  Reading reading = Reading::kMissing;
  JsonRef value;  // null but for kValue
};

// Reads the file at path; a null path leads to none. What is no regular file is not opened: a pipe
// or a device would block or never end.
[[nodiscard]] JsonFile findJsonFile(const char* path);

// The value in the file at path, with one reference that the caller owns; null for any reading but
// kValue.
[[nodiscard]] json_object* readJsonFile(const char* path);

}  // namespace hearth

#endif
