// How the library's own code logs: every line in group LOG_GROUP_UTIL, and nothing computed for a
// line that is filtered out.
#ifndef HEARTH_LOG_LOG_H
#define HEARTH_LOG_LOG_H

#include "hearth/be_config.h"
#include "hearth/logger.h"

namespace hearth {

// The settings and the mask are plain words that may change while others read them.
template <typename Word>
inline Word relaxedLoad(const Word& word) {
  return __atomic_load_n(&word, __ATOMIC_RELAXED);
}

// True when the severity's own switch lets lines through. LOG_PRINT and unknown severities have
// none.
inline bool severityIsOn(LOG_TYPE_T type) {
  switch (type) {
    case LOG_INFO:
      return relaxedLoad(BEConfig::LOG_INFO_ENABLE) != 0;
    case LOG_WARNING:
      return relaxedLoad(BEConfig::LOG_WARNING_ENABLE) != 0;
    case LOG_DEBUG:
      return relaxedLoad(BEConfig::LOG_DEBUG_ENABLE) != 0;
    case LOG_ERROR:
      return relaxedLoad(BEConfig::LOG_ERROR_ENABLE) != 0;
    default:
      return true;
  }
}

// True when a line of the library's own group and this severity would be written now.
inline bool logs(LOG_TYPE_T type) {
  return (relaxedLoad(Logger::mask) & (1U << LOG_GROUP_UTIL)) != 0 && severityIsOn(type);
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
