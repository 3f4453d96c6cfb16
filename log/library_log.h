// How the library's own code logs: every line in group LOG_GROUP_UTIL, and nothing computed for a
// line that is filtered out.
#ifndef HEARTH_LOG_LIBRARY_LOG_H
#define HEARTH_LOG_LIBRARY_LOG_H

#include "base/atomic_word.h"
#include "hearth/be_config.h"
#include "hearth/logger.h"

namespace hearth {

// One severity: its label in a line, and the setting that switches it off at zero; null for none.
struct Severity {
  const char* label;
  const int32_t* enable;
};

// In the order of LOG_TYPE_T.
inline constexpr Severity kSeverities[] = {
    {"INFO", &BEConfig::LOG_INFO_ENABLE},
    {"WARN", &BEConfig::LOG_WARNING_ENABLE},
    {"DEBUG", &BEConfig::LOG_DEBUG_ENABLE},
    {"ERROR", &BEConfig::LOG_ERROR_ENABLE},
    {"PRINT", nullptr},
};

// Any value without a row of its own behaves as LOG_PRINT.
inline const Severity& severityOf(LOG_TYPE_T type) {
  constexpr unsigned kLast = LOG_PRINT;
  const auto row = static_cast<unsigned>(type);
  return kSeverities[row < kLast ? row : kLast];
}

inline bool severityIsOn(LOG_TYPE_T type) {
  const int32_t* const enable = severityOf(type).enable;
  return enable == nullptr || relaxedLoad(*enable) != 0;
}

// True when a line of the library's own group and this severity would be written now. Compiled as
// the exception, which keeps what logs out of the way of what works.
inline bool logs(LOG_TYPE_T type) {
  const bool isOn = (relaxedLoad(Logger::mask) & (1U << LOG_GROUP_UTIL)) != 0 && severityIsOn(type);
  return __builtin_expect(static_cast<long>(isOn), 0L) != 0;
}

}  // namespace hearth

// Logs a line of the library, evaluating the arguments only when it is written.
#define HEARTH_LOG(type, ...)                             \
  do {                                                    \
    if (hearth::logs(type)) {                             \
      Logger::print((type), LOG_GROUP_UTIL, __VA_ARGS__); \
    }                                                     \
  } while (false)

#endif
