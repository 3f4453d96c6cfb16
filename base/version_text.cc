// The library's version as a text in its file, for a person who has nothing but the file:
//
//   strings libhearth.so.1 | grep '^hearth '
//
// Hidden and used by nobody; the linker is told to keep it (cmake/targets.cmake).
#include "hearth/version.h"

extern "C" {
// NOLINTBEGIN(readability-identifier-naming): the linker is told this name
extern const char hearth_version_text[];
const char hearth_version_text[] = "hearth " HEARTH_VERSION;
// NOLINTEND(readability-identifier-naming)
}
