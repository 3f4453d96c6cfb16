// Formats a line in its one buffer: first the message behind the room of the header, then the
// header before it.
#include "log/line.h"

#include <cstdio>
#include <cstring>

#include "log/library_log.h"

namespace hearth {
namespace {

const char* groupName(LOG_GROUP_T group) {
  constexpr unsigned kNames = sizeof(Logger::LogGroupNames) / sizeof(Logger::LogGroupNames[0]);
  const auto row = static_cast<unsigned>(group);
  return row < kNames ? Logger::LogGroupNames[row] : "UNKNOWN";
}

}  // namespace

LogLine::LogLine(LOG_TYPE_T type, LOG_GROUP_T group, const char* format, va_list arguments) {
  char* const message = text_ + kHeaderSize;
  if (vsnprintf(message, kMessageCapacity, format, arguments) < 0) {
    message[0] = '\0';
  }
  message[kMessageCapacity - 1] = '\0';
  putHeader(type, group);
  size_ = kHeaderSize + strlen(message);
}

// Fills the room with blanks, then puts the group at its left end, the label at its right end and
// the two marks between.
void LogLine::putHeader(LOG_TYPE_T type, LOG_GROUP_T group) {
  const char* const name = groupName(group);
  const char* const label = severityOf(type).label;
  const std::size_t labelSize = strlen(label);
  char* const labelEnd = text_ + kGroupWidth + 1 + kLabelWidth;
  memset(text_, ' ', kHeaderSize);
  memcpy(text_, name, strnlen(name, kGroupWidth));
  text_[kGroupWidth] = '|';
  memcpy(labelEnd - labelSize, label, labelSize);
  *labelEnd = ':';
}

}  // namespace hearth
