// The version of hearth's headers. The build, the packages and the command take it from here.
#ifndef HEARTH_VERSION_H
#define HEARTH_VERSION_H

#define HEARTH_VERSION_MAJOR 1
#define HEARTH_VERSION_MINOR 0
#define HEARTH_VERSION_PATCH 0

// "1.0.0"
#define HEARTH_VERSION_TEXT_OF(number) #number
#define HEARTH_VERSION_JOIN(major, minor, patch) \
  HEARTH_VERSION_TEXT_OF(major) "." HEARTH_VERSION_TEXT_OF(minor) "." HEARTH_VERSION_TEXT_OF(patch)
#define HEARTH_VERSION \
  HEARTH_VERSION_JOIN(HEARTH_VERSION_MAJOR, HEARTH_VERSION_MINOR, HEARTH_VERSION_PATCH)

// One number to compare: #if HEARTH_VERSION_NUMBER >= 10200 asks for 1.2.0 or later.
#define HEARTH_VERSION_NUMBER \
  (HEARTH_VERSION_MAJOR * 10000 + HEARTH_VERSION_MINOR * 100 + HEARTH_VERSION_PATCH)

#endif
