// The calls for a stack's frames that glibc has in <execinfo.h>, here for C libraries without it.
#ifndef HEARTH_LOG_BACKTRACE_H
#define HEARTH_LOG_BACKTRACE_H

#ifdef HEARTH_HAS_BACKTRACE
#include <execinfo.h>
#else

// Stores the frames of the calling function and its callers, at most so many, and answers their
// number. In a signal handler these go on behind the handler with what the signal interrupted.
// Takes no memory from the heap. Threads: any.
int backtrace(void** frames, int most);

// Writes a line for each frame as glibc does: the file of the code, the function and the place in
// it where these are known, the address. Takes no memory from the heap. Threads: any.
// NOLINTNEXTLINE(readability-identifier-naming): glibc's name
void backtrace_symbols_fd(void* const* frames, int count, int fd);

#endif

#endif
