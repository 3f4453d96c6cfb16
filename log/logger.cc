// The logger's entry points. A line passes five steps, each in its own place:
//
//   filter   Logger::print    the group's bit and the severity's switch; most lines end here
//   format   log/line         the text, on the stack
//   lock     log/line_output  Logger::lock, so that lines stay whole and in one order
//   append   log/line_output  to the log file, if file logging is on
//   show     log/line_output  on standard output
#include "hearth/logger.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>

#include "base/no_cancellation.h"
#include "base/unique_fd.h"
#include "hearth/be_config.h"
#include "log/crash_handler.h"
#include "log/library_log.h"
#include "log/line.h"
#include "log/line_output.h"

uint32_t Logger::mask = 0;
int Logger::enableFileLog = 1;
pthread_mutex_t Logger::lock = PTHREAD_MUTEX_INITIALIZER;

const char* const Logger::LogGroupNames[19] = {"UTIL",           "WSL",           "API_AL",
                                               "APIV1_GATEWAY",  "APIV1_WIFI",    "APIV1_NETWORK",
                                               "APIV1_SECURITY", "APIV1_SERVICE", "APIV1_MEDIA",
                                               "APIV1_QOS",      "FAL",           "LDB_GATEWAY",
                                               "LDB_WIFI",       "LDB_NETWORK",   "LDB_SECURITY",
                                               "LDB_SERVICE",    "LDB_MEDIA",     "LDB_QOS",
                                               "UTEST"};

namespace hearth {
namespace {

// The group's bit in the mask; 0 for a group beyond the mask's 32 bits.
uint32_t groupBit(LOG_GROUP_T group) {
  const auto number = static_cast<uint32_t>(group);
  return number < 32 ? 1U << number : 0U;
}

// True when no file has the name. A file that is there but that stat() cannot describe (too large
// for it, no permission) is not missing.
bool isMissing(const char* path) {
  struct stat status;
  if (stat(path, &status) == 0) {
    return false;
  }
  return errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG || errno == ELOOP;
}

// Makes an empty file. A file that another process has made meanwhile keeps its contents.
bool create(const char* path) {
  return static_cast<bool>(UniqueFd(
      open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666)));
}

// Out of line, so that a line that is filtered out does not pay for the buffer of one that is
// written.
__attribute__((noinline, format(printf, 3, 0))) void printLine(LOG_TYPE_T type, LOG_GROUP_T group,
                                                               const char* format,
                                                               va_list arguments) {
  const NoCancellation guard;
  const int kept = errno;
  const LogLine line(type, group, format, arguments);
  writeLine(line);
  errno = kept;
}

}  // namespace
}  // namespace hearth

int Logger::init() {
  const hearth::NoCancellation guard;
  hearth::relaxedStore(mask, static_cast<uint32_t>(BEConfig::LOG_MASK));
  const char* const file = BEConfig::LOG_FILE.c_str();
  // A log file that exists leaves file logging as it was.
  if (hearth::isMissing(file)) {
    const bool isOn = hearth::create(file) && BEConfig::LOG_TO_FILE != 0;
    hearth::relaxedStore(enableFileLog, isOn ? 1 : 0);
  }
  hearth::prepareBacktrace();
  signal(SIGSEGV, be_sig_handler);
  return 0;
}

void Logger::setGroup(LOG_GROUP_T group, bool enable) {
  if (enable) {
    __atomic_fetch_or(&mask, hearth::groupBit(group), __ATOMIC_RELAXED);
  } else {
    __atomic_fetch_and(&mask, ~hearth::groupBit(group), __ATOMIC_RELAXED);
  }
}

void Logger::print(LOG_TYPE_T type, LOG_GROUP_T group, const char* format, ...) {
  if ((hearth::relaxedLoad(mask) & hearth::groupBit(group)) == 0 || !hearth::severityIsOn(type)) {
    return;
  }
  va_list arguments;
  va_start(arguments, format);
  hearth::printLine(type, group, format, arguments);
  va_end(arguments);
}
