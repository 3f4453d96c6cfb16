// The whole seconds of an uptime text, apart from the file that it comes from.
#ifndef HEARTH_SETTINGS_UPTIME_H
#define HEARTH_SETTINGS_UPTIME_H

#include <cstdint>

namespace hearth {

// The first number of the text, rounded to six decimals, less its decimals; 0 when there is none.
// Read as in the C locale. A number out of range gives the nearest one in range.
[[nodiscard]] int32_t wholeSeconds(const char* text);

// That of a file's beginning; 0 when it cannot be read.
[[nodiscard]] int32_t wholeSecondsIn(const char* path);

}  // namespace hearth

#endif
