// The part of the fatal-signal handler that the logger prepares while all is well. The handler
// itself, be_sig_handler, is public.
#ifndef HEARTH_LOG_CRASH_HANDLER_H
#define HEARTH_LOG_CRASH_HANDLER_H

namespace hearth {

// Takes one backtrace for nothing. The first one loads a library and takes memory, which a crashing
// process may not be able to do.
void prepareBacktrace();

}  // namespace hearth

#endif
