// The lines of a path's walk, for the one that reads and the one that stores.
//
// A walk has several lines for each token, and nearly always none of them is wanted. So it asks
// once, before its first step, and keeps the answer in `isLogged_`. If that is false, a line costs
// one test and its arguments cost nothing. If it is true, each line is still filtered by its own
// severity.
#ifndef HEARTH_JSON_PATH_WALK_LOG_H
#define HEARTH_JSON_PATH_WALK_LOG_H

#include "log/library_log.h"

// Logs a line from a member function of a walk.
#define WALK_LOG(type, ...)                                        \
  do {                                                             \
    if (__builtin_expect(static_cast<long>(isLogged_), 0L) != 0) { \
      HEARTH_LOG(type, __VA_ARGS__);                               \
    }                                                              \
  } while (false)

#endif
