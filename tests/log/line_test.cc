// A line's text as a pure function of its arguments: no file, no lock, no switch.
#include "log/line.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace hearth {
namespace {

HEARTH_PRINTF_LIKE(3, 4) std::string lineOf(int type, int group, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const LogLine line(static_cast<LOG_TYPE_T>(type), static_cast<LOG_GROUP_T>(group), format,
                     arguments);
  va_end(arguments);
  return {line.data(), line.size()};
}

TEST(LogLine, HeaderNamesGroupAndSeverity) {
  const std::tuple<int, int, const char*> rows[] = {
      {0, 0, "UTIL          | INFO: x\n"},  {1, 1, "WSL           | WARN: x\n"},
      {2, 6, "APIV1_SECURITY|DEBUG: x\n"},  {3, 18, "UTEST         |ERROR: x\n"},
      {4, 14, "LDB_SECURITY  |PRINT: x\n"}, {7, 10, "FAL           |PRINT: x\n"},
      {-1, 2, "API_AL        |PRINT: x\n"}, {100, 19, "UNKNOWN       |PRINT: x\n"},
      {0, 31, "UNKNOWN       | INFO: x\n"}, {0, -1, "UNKNOWN       | INFO: x\n"},
  };
  for (const auto& [type, group, line] : rows) {
    EXPECT_EQ(line, lineOf(type, group, "%s\n", "x")) << type << " " << group;
  }
}

TEST(LogLine, MessageIsCutAt1023Bytes) {
  const std::string header = "UTIL          | INFO: ";
  for (const std::size_t length : {0U, 1U, 1022U, 1023U, 1024U, 2000U, 100000U}) {
    const std::string message(length, 'm');
    EXPECT_EQ(header + message.substr(0, 1023), lineOf(0, 0, "%s", message.c_str())) << length;
  }
  EXPECT_EQ(header + "ab", lineOf(0, 0, "ab%cde", 0)) << "ends at a zero byte";
  const wchar_t unspeakable[] = {0x7fffffff, 0};
  EXPECT_EQ(header, lineOf(0, 0, "ab%ls", unspeakable)) << "cannot be formatted";
}

}  // namespace
}  // namespace hearth
