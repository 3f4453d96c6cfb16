// The uptime from texts of all kinds, in two locales, and from the running system.
#include "settings/uptime.h"

#include <clocale>
#include <ctime>
#include <utility>

#include "hearth/be_config.h"
#include "tests/support/scratch.h"

namespace hearth {
namespace {

static_assert(sizeof(time_t) == 8 && sizeof(off_t) == 8, "also on 32-bit processors");

using UptimeTest = Scratch;

TEST_F(UptimeTest, IsTheFirstNumberInWholeSeconds) {
  const std::pair<const char*, int32_t> rows[] = {
      {"12345.67 98765.43\n", 12345},
      {"99.9999996 1\n", 100},
      {"99.9999994", 99},
      {"0.99", 0},
      {" \t7", 7},
      {"1e3", 1000},
      {"-5.5", -5},
      {"", 0},
      {"\n", 0},
      {"up 5", 0},
      {".", 0},
      {"12,9 3", 12},
      {"2147483647.5", 2147483647},
      {"2147483648", 2147483647},
      {"1e300", 2147483647},
      {"-1e300", INT32_MIN},
      {"nan", 0},
  };
  for (const char* locale : {"C", "de_DE.UTF-8"}) {  // the second where it is installed
    setlocale(LC_ALL, locale);
    for (const auto& [text, seconds] : rows) {
      EXPECT_EQ(seconds, wholeSeconds(text)) << text << " in " << locale;
      putText("uptime", text);
      EXPECT_EQ(seconds, wholeSecondsIn("uptime")) << text << " in " << locale;
    }
    setlocale(LC_ALL, "C");
  }
  EXPECT_EQ(0, wholeSecondsIn("missing"));
  EXPECT_EQ(0, wholeSecondsIn("."));
}

TEST_F(UptimeTest, IsTheSystems) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return time.tv_sec;
  };
  const time_t before = now();
  const time_t told = BEConfig::get_Session_Uptime();
  EXPECT_GE(told, before - 1);
  EXPECT_LE(told, now() + 1);
}

}  // namespace
}  // namespace hearth
