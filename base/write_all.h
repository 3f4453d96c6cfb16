// Writes a block of data whole, where write() alone may stop halfway.
#ifndef HEARTH_BASE_WRITE_ALL_H
#define HEARTH_BASE_WRITE_ALL_H

#include <cstddef>

namespace hearth {

// Writes all of the data to the descriptor, through signals and short writes. If the descriptor
// does not block and has no room (a full pipe, a slow terminal), waits for room at most so many
// milliseconds, anew after each piece of progress.
// Failure: false, with errno; a part may have been written. Threads: any.
bool writeAll(int fd, const char* data, std::size_t size, int patienceMilliseconds = 1000);

}  // namespace hearth

#endif
