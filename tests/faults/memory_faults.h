// Failing allocations, from outside the library: a shared library with the allocation functions of
// the C library, which refuse when they are told to and count what is in use.
#ifndef HEARTH_TESTS_FAULTS_MEMORY_FAULTS_H
#define HEARTH_TESTS_FAULTS_MEMORY_FAULTS_H

// The n-th allocation from now on is refused, and all later ones too when that lasts.
void failAllocation(int nth, bool lasts);

// Ends the refusals; the allocations since.
int countedAllocations();

// Whether the first refusal was met by a library's function, or by what that had called.
bool wasRefusedIn(const char* function);

// Allocated and not yet freed, in the whole process.
int blocksInUse();

#endif
