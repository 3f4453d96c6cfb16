// The text of one log line, formatted without touching a file, a lock or the heap:
//
//   UTIL          | INFO: the message
//
// The header, "%-14s|%5s: " with group and severity, always has the same length, so the message is
// formatted straight behind it and the whole line is one piece of memory.
#ifndef HEARTH_LOG_LINE_H
#define HEARTH_LOG_LINE_H

#include <cstdarg>
#include <cstddef>

#include "hearth/logger.h"

namespace hearth {

class LogLine {
 public:
  // Formats the line. The message is cut at 1,023 bytes, ends at its first zero byte, and is empty
  // when it cannot be formatted.
  LogLine(LOG_TYPE_T type, LOG_GROUP_T group, const char* format, va_list arguments)
      HEARTH_PRINTF_LIKE(4, 0);

  const char* data() const { return text_; }
  std::size_t size() const { return size_; }

 private:
  static constexpr std::size_t kGroupWidth = 14;
  static constexpr std::size_t kLabelWidth = 5;
  static constexpr std::size_t kHeaderSize = kGroupWidth + 1 + kLabelWidth + 2;
  static constexpr std::size_t kMessageCapacity = 1024;

  void putHeader(LOG_TYPE_T type, LOG_GROUP_T group);

  char text_[kHeaderSize + kMessageCapacity];
  std::size_t size_;
};

}  // namespace hearth

#endif
