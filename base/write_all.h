// Writing all of it: signals and short writes do not cut what is written.
#ifndef HEARTH_BASE_WRITE_ALL_H
#define HEARTH_BASE_WRITE_ALL_H

#include <cstddef>

namespace hearth {

// Writes all of the data. A full pipe or terminal that does not block is waited for, so long for
// each piece of progress. False, with errno, when the rest cannot be written.
bool writeAll(int fd, const char* data, std::size_t size, int patienceMilliseconds = 1000);

}  // namespace hearth

#endif
