// How long an address must wait before its next login attempt.
#ifndef HEARTH_LOGIN_LOGIN_WAIT_H
#define HEARTH_LOGIN_LOGIN_WAIT_H

#include <cstdint>
#include <ctime>

namespace hearth {

// The minutes that so many attempts cost: none for the first four, then one for each.
[[nodiscard]] constexpr uint32_t penaltyMinutes(int32_t attempts) {
  return attempts > 4 ? static_cast<uint32_t>(attempts) - 4 : 0;
}

// What is left of the penalty now; all of it while the last attempt lies in the future. The text
// holds seconds since the epoch, and counts as 0 when it holds no number.
[[nodiscard]] uint32_t waitMinutes(int32_t attempts, const char* lastAttempt, time_t now);

}  // namespace hearth

#endif
