// How operations report their outcome: exported ones by a status, inner ones as system calls do, by
// false and errno.
#ifndef HEARTH_BASE_STATUS_H
#define HEARTH_BASE_STATUS_H

#include <cerrno>

namespace hearth {

constexpr int kSuccess = 0;
constexpr int kFailure = 2;

// Sets errno and answers false, so that a failing function can return both at once.
[[nodiscard]] inline bool failWith(int error) {
  errno = error;
  return false;
}

}  // namespace hearth

#endif
