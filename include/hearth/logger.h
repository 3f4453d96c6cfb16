// The log of the backend and of the library itself, and the handler of fatal signals.
//
// A line is written when its group's bit is set in Logger::mask and its severity's switch in
// BEConfig is not zero. It goes to standard output and, while file logging is on, first to the file
// that BEConfig::LOG_FILE names:
//
//   UTIL          | INFO: Dump object content:
//   APIV1_SECURITY|ERROR: no such rule
//
// The file is opened, appended to and closed for every line: it can be renamed away at any time
// (log rotation), and what was logged before a power cut has left the process. Standard output is
// the C library's: a terminal shows each line at its end, but a pipe or a file gets lines in blocks
// of some kilobytes and the rest when the process exits, which SIGKILL denies it. A backend that
// wants every line at once says setvbuf(stdout, nullptr, _IOLBF, 0) when it starts.
//
// <syslog.h> defines macros named LOG_INFO, LOG_WARNING and LOG_DEBUG. In a source file that needs
// both, include this header first, or undefine the three macros before including it.
#ifndef HEARTH_LOGGER_H
#define HEARTH_LOGGER_H

#include <pthread.h>
#include <stdint.h>

#include "hearth/export.h"

#if defined(LOG_INFO) || defined(LOG_WARNING) || defined(LOG_DEBUG)
#error \
    "hearth/logger.h: <syslog.h> has made LOG_INFO, LOG_WARNING and LOG_DEBUG macros; \
include hearth's headers before <syslog.h>, or #undef the three before including them"
#endif

#if defined(__GNUC__)
#define HEARTH_PRINTF_LIKE(text, values) __attribute__((format(printf, text, values)))
#else
#define HEARTH_PRINTF_LIKE(text, values)
#endif

// Severity of a line. LOG_PRINT, and any value not named here, is never switched off.
enum LOG_TYPE_T : int { LOG_INFO, LOG_WARNING, LOG_DEBUG, LOG_ERROR, LOG_PRINT };

// Group of a line: bit n of Logger::mask lets group n through. The library's own lines are all in
// LOG_GROUP_UTIL; the others are the backend's to use.
enum LOG_GROUP_T : int {
  LOG_GROUP_UTIL,
  LOG_GROUP_WSL,
  LOG_GROUP_API_AL,
  LOG_GROUP_APIV1_GATEWAY,
  LOG_GROUP_APIV1_WIFI,
  LOG_GROUP_APIV1_NETWORK,
  LOG_GROUP_APIV1_SECURITY,
  LOG_GROUP_APIV1_SERVICE,
  LOG_GROUP_APIV1_MEDIA,
  LOG_GROUP_APIV1_QOS,
  LOG_GROUP_FAL,
  LOG_GROUP_LDB_GATEWAY,
  LOG_GROUP_LDB_WIFI,
  LOG_GROUP_LDB_NETWORK,
  LOG_GROUP_LDB_SECURITY,
  LOG_GROUP_LDB_SERVICE,
  LOG_GROUP_LDB_MEDIA,
  LOG_GROUP_LDB_QOS,
  LOG_GROUP_UTEST
};

class HEARTH_API Logger {
 public:
  Logger() = delete;

  // Group mask. Zero, so that nothing is logged, until init copies BEConfig::LOG_MASK into it.
  static uint32_t mask;

  // Not zero: lines go to the log file as well. Settled by init.
  static int enableFileLog;

  // The name printed for each group; groups 19 to 31 are printed as "UNKNOWN".
  static const char* const LogGroupNames[19];

  // Held while one line is written. It is the innermost lock of the library and is not recursive:
  // whoever holds it must not log.
  static pthread_mutex_t lock;

  // Takes the mask from BEConfig, settles file logging and installs be_sig_handler for SIGSEGV.
  // A log file that exists turns nothing off: file logging stays as it is. A missing one is created
  // empty, and file logging then follows BEConfig::LOG_TO_FILE; if it cannot be created, file
  // logging is off.
  // Failure: none is reported; the result is always 0.
  // Threads: call it once, on the start-up thread, after BEConfig::init.
  static int init();

  // Lets a group through (true) or holds it back (false). A group of 32 or more changes nothing.
  // Threads: any.
  static void setGroup(LOG_GROUP_T group, bool enable);

  // Writes one line, formatted as printf would, without a line end of its own. The message is cut
  // at 1,023 bytes. A line that is filtered out costs neither formatting nor a lock.
  // Failure: a log file that cannot be opened is named on standard output, the line still goes to
  // standard output, and the next line tries the file again.
  // Ownership: nothing is kept; no heap memory is used, and errno stays as it was.
  // Threads: any; lines never interleave, and file and console show them in one order. A thread
  // that is cancelled (pthread_cancel) meanwhile writes its line to the end first.
  static void print(LOG_TYPE_T type, LOG_GROUP_T group, const char* format, ...)
      HEARTH_PRINTF_LIKE(3, 4);
};

// Reports a fatal signal and ends the process: logs "Error: signal N:" as an error, writes at most
// 10 frames of the faulting thread's stack to standard error (none where the C library cannot) and
// calls exit(1). It never returns. Logger::init installs it for SIGSEGV; the backend may install it
// for further signals with signal().
// The end: an alarm ends the process with _exit(1) after 30 seconds, whatever holds exit up. For
// that the handler takes SIGALRM over, with any alarm that the backend has set, and unblocks it in
// its thread.
// Failure: a stack that has overflowed is not reported, since the handler runs on the stack of the
// thread that faults: the process ends by SIGSEGV. A fault inside the handler goes on with its next
// step.
// Threads: any. It waits for no lock that its own thread holds, and for others only a bounded time.
// A second thread that faults meanwhile is held, unreported, until the process ends; the other
// threads run on until then, and may log.
HEARTH_API void be_sig_handler(int signalNumber);

#endif
