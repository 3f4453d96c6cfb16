// Writes finished lines: each to the log file, then to standard output, one line at a time.
#ifndef HEARTH_LOG_LINE_OUTPUT_H
#define HEARTH_LOG_LINE_OUTPUT_H

#include "log/line.h"

namespace hearth {

// Writes the line to the log file, if file logging is on, and to standard output, both under
// Logger::lock. A line from the handler of a fault in the middle of a line goes without the lock,
// since its own thread holds it. A log file that cannot be opened is named on standard output.
// Threads: any.
void writeLine(const LogLine& line);

// Called when the process is dying: the threads that hold locks may never let go of them. From now
// on no line waits longer than half a second for Logger::lock, and none at all for the lock of
// standard output.
void stopWaitingForLocks();

}  // namespace hearth

#endif
