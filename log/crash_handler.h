// What the logger needs of the fatal-signal handler besides be_sig_handler itself.
#ifndef HEARTH_LOG_CRASH_HANDLER_H
#define HEARTH_LOG_CRASH_HANDLER_H

namespace hearth {

// Loads, while the process is healthy, what taking a backtrace loads on its first use.
void prepareBacktrace();

}  // namespace hearth

#endif
