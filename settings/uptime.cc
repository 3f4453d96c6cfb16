// Reads the uptime in two steps: the first number of the text, rounded to six decimals, and then
// its whole part. The rounding may carry: 99.9999996 is 100 seconds. A locale of its own makes "."
// the decimal point, whatever locale the backend has set.
#include "settings/uptime.h"

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>
#include <type_traits>

#include "base/no_cancellation.h"
#include "hearth/be_config.h"

namespace hearth {
namespace {

struct FreeLocale {
  void operator()(locale_t locale) const { freelocale(locale); }
};
struct CloseFile {
  void operator()(FILE* file) const { fclose(file); }
};

// The number, or the nearest one that 32 bits hold.
int32_t clamped(long number) {
  using Limits = std::numeric_limits<int32_t>;
  return static_cast<int32_t>(std::clamp<long>(number, Limits::min(), Limits::max()));
}

}  // namespace

int32_t wholeSeconds(const char* text) {
  const std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale> locale(
      newlocale(LC_ALL_MASK, "C", nullptr));
  if (locale == nullptr) {
    return 0;
  }
  char rounded[40];  // a longer number is cut, and is out of range all the same
  snprintf(rounded, sizeof(rounded), "%f", strtod_l(text, nullptr, locale.get()));
  return clamped(strtol(rounded, nullptr, 10));
}

int32_t wholeSecondsIn(const char* path) {
  const std::unique_ptr<FILE, CloseFile> file(fopen(path, "re"));
  char line[128];
  if (file == nullptr || fgets(line, sizeof(line), file.get()) == nullptr) {
    return 0;
  }
  return wholeSeconds(line);
}

}  // namespace hearth

int32_t BEConfig::get_Session_Uptime() {
  const hearth::NoCancellation guard;
  return hearth::wholeSecondsIn("/proc/uptime");
}
