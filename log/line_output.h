// Where a finished line goes: to the log file, then to standard output, one line at a time.
#ifndef HEARTH_LOG_LINE_OUTPUT_H
#define HEARTH_LOG_LINE_OUTPUT_H

#include "log/line.h"

namespace hearth {

// Writes the line to the log file, if file logging is on, and to standard output, both under
// Logger::lock. Only a line that its own thread's unfinished line would block goes without it.
void writeLine(const LogLine& line);

// From now on no line waits longer than half a second for Logger::lock, nor at all for standard
// output's own lock: the process is dying, and whoever holds them may never let go.
void loseTheRightToWait();

}  // namespace hearth

#endif
