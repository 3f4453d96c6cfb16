// Work by hand that several themes measure against.
#ifndef HEARTH_BENCH_FLOOR_H
#define HEARTH_BENCH_FLOOR_H

#include <json-c/json.h>

#include <string>

namespace bench {

// Renders the value, writes a temporary file beside path and renames it over path. Flushed: the
// contents before the renaming and the folder after it.
bool saveByHand(json_object* value, const std::string& path, bool isFlushed);

// Appends to a file that is opened and closed for it.
bool appendByHand(const char* path, const char* data, size_t size);

}  // namespace bench

#endif
