// How the library's own code logs: through HEARTH_LOG, which puts every line into group
// LOG_GROUP_UTIL and computes nothing for a line that is filtered out.
#ifndef HEARTH_LOG_LIBRARY_LOG_H
#define HEARTH_LOG_LIBRARY_LOG_H

#include "base/atomic_word.h"
#include "hearth/be_config.h"
#include "hearth/logger.h"

namespace hearth {

struct Severity {
  const char* label;      // as it stands in a line
  const int32_t* enable;  // the setting that switches it off at zero; null: always on
};

// In the order of LOG_TYPE_T.
inline constexpr Severity kSeverities[] = {
    {"INFO", &BEConfig::LOG_INFO_ENABLE},
    {"WARN", &BEConfig::LOG_WARNING_ENABLE},
    {"DEBUG", &BEConfig::LOG_DEBUG_ENABLE},
    {"ERROR", &BEConfig::LOG_ERROR_ENABLE},
    {"PRINT", nullptr},
};

// The row of a severity. Any value without a row of its own behaves as LOG_PRINT.
inline const Severity& severityOf(LOG_TYPE_T type) {
  constexpr unsigned kLast = LOG_PRINT;
  const auto row = static_cast<unsigned>(type);
  return kSeverities[row < kLast ? row : kLast];
}

inline bool severityIsOn(LOG_TYPE_T type) {
  const int32_t* const enable = severityOf(type).enable;
  return enable == nullptr || relaxedLoad(*enable) != 0;
}

// True when a line of the library's own group and this severity would be written now. Marked
// unlikely, so that logging code stays off the hot path.
inline bool logs(LOG_TYPE_T type) {
  const bool isOn = (relaxedLoad(Logger::mask) & (1U << LOG_GROUP_UTIL)) != 0 && severityIsOn(type);
  return __builtin_expect(static_cast<long>(isOn), 0L) != 0;
}

}  // namespace hearth

// Logs a line of the library. The arguments are evaluated only if the line is written.
#define HEARTH_LOG(type, ...)                             \
  do {                                                    \
    if (hearth::logs(type)) {                             \
      Logger::print((type), LOG_GROUP_UTIL, __VA_ARGS__); \
    }                                                     \
  } while (false)

#endif
