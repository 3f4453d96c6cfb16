// Failing allocations, from outside the library: a shared library with the allocation functions of
// the C library, which refuse when they are told to and count what is in use.
#ifndef HEARTH_TESTS_FAULTS_MEMORY_FAULTS_H
#define HEARTH_TESTS_FAULTS_MEMORY_FAULTS_H

// Starts the counting. The n-th allocation from now on is refused, and all later ones too if
// `lasts`. None is refused at 0.
void failAllocation(int nth, bool lasts);

// Ends the counting and the refusals. Answers the number of allocations since its start.
int countedAllocations();

// True when the first refusal happened in a library's function or in a function that it had called.
bool wasRefusedIn(const char* function);

// The number of blocks allocated and not yet freed, in the whole process.
int blocksInUse();

#endif
