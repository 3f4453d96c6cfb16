// The one reader of JSON files.
#ifndef HEARTH_JSON_FILE_READ_H
#define HEARTH_JSON_FILE_READ_H

#include "json/json_ref.h"

namespace hearth {

// What a path leads to.
struct JsonFile {
  bool exists = false;  // whatever it is
  JsonRef value;        // null as readJsonFile says
};

[[nodiscard]] JsonFile findJsonFile(const char* path);

// The value in the file at path, with one reference that the caller owns. Null when path is
// null, or the file cannot be read, does not parse, or is no regular file (a pipe or a device would
// block or never end).
[[nodiscard]] json_object* readJsonFile(const char* path);

}  // namespace hearth

#endif
