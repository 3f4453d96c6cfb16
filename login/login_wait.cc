// Counts down from the penalty by the whole minutes since the last attempt. Times are unsigned, as
// the records hold them: a negative or overlong number becomes a time far in the future.
#include "login/login_wait.h"

#include <cstdlib>

namespace hearth {

uint32_t waitMinutes(int32_t attempts, const char* lastAttempt, time_t now) {
  const uint32_t penalty = penaltyMinutes(attempts);
  const unsigned long last = strtoul(lastAttempt, nullptr, 10);
  const auto current = static_cast<unsigned long>(now);
  if (current <= last) {
    return penalty;
  }
  const unsigned long elapsed = (current - last) / 60;
  return elapsed >= penalty ? 0 : penalty - static_cast<uint32_t>(elapsed);
}

}  // namespace hearth
