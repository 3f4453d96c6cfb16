// Atomic access to plain words, for words that other threads may read while one thread writes them.
// The public settings, the log's mask and the states of slots are declared as plain integers, so
// each access names its own memory order.
#ifndef HEARTH_BASE_ATOMIC_WORD_H
#define HEARTH_BASE_ATOMIC_WORD_H

namespace hearth {

// Relaxed: reads or writes the word in one piece and orders nothing else.
template <typename Word>
inline Word relaxedLoad(const Word& word) {
  return __atomic_load_n(&word, __ATOMIC_RELAXED);
}

template <typename Word>
inline void relaxedStore(Word& word, Word value) {
  __atomic_store_n(&word, value, __ATOMIC_RELAXED);
}

// Acquire and release: a thread that loads the value also sees everything that the storing thread
// wrote before it.
template <typename Word>
inline Word acquireLoad(const Word& word) {
  return __atomic_load_n(&word, __ATOMIC_ACQUIRE);
}

template <typename Word>
inline void releaseStore(Word& word, Word value) {
  __atomic_store_n(&word, value, __ATOMIC_RELEASE);
}

}  // namespace hearth

#endif
