// How long an address must wait before its next login attempt: a pure function of its attempts, the
// last of them and the time, so that tests need no clock.
#ifndef HEARTH_LOGIN_LOGIN_WAIT_H
#define HEARTH_LOGIN_LOGIN_WAIT_H

#include <cstdint>
#include <ctime>

namespace hearth {

// The penalty for so many attempts, in minutes: none for the first four, then one for each.
[[nodiscard]] constexpr uint32_t penaltyMinutes(int32_t attempts) {
  return attempts > 4 ? static_cast<uint32_t>(attempts) - 4 : 0;
}

// Minutes still to wait at `now`; the full penalty if the last attempt is in the future. The text
// holds the last attempt in seconds since the epoch; a text without a number counts as 0.
[[nodiscard]] uint32_t waitMinutes(int32_t attempts, const char* lastAttempt, time_t now);

}  // namespace hearth

#endif
