// Reads the uptime as whole seconds: from a text, so that tests can give any, and from a file.
#ifndef HEARTH_SETTINGS_UPTIME_H
#define HEARTH_SETTINGS_UPTIME_H

#include <cstdint>

namespace hearth {

// The first number of the text, read as in the C locale, rounded to six decimals and then cut to
// whole seconds. A number out of range gives the nearest one in range. 0 when the text has no
// number or memory runs out. Threads: any.
[[nodiscard]] int32_t wholeSeconds(const char* text);

// Reads the first line of the file as above. 0 when the file cannot be read.
[[nodiscard]] int32_t wholeSecondsIn(const char* path);

}  // namespace hearth

#endif
