// The one writer of files: replaces a file's contents in one step, so that a reader, a crash or a
// power cut meets the old contents or the new ones, never a part.
#ifndef HEARTH_JSON_FILE_REPLACE_H
#define HEARTH_JSON_FILE_REPLACE_H

#include <cstddef>

struct json_object;

namespace hearth {

// Whether the contents must have reached the device when the call returns.
enum class Durability { kFlushed, kUnflushed };

// Replaces the file at path, or makes it. False, with the file as it was, when that fails; errno
// says why.
[[nodiscard]] bool replaceFile(const char* path, const char* data, std::size_t size,
                               Durability durability);

// The same with the value's indented text. Refuses a null value, and one nested deeper than the
// parser would read back.
[[nodiscard]] bool replaceFileWithJson(const char* path, json_object* value, Durability durability);

// Removes the temporary files that a crash has left beside path. Whatever is young enough to belong
// to a save in progress stays.
void removeStrayTemporaries(const char* path);

}  // namespace hearth

#endif
