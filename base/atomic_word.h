// Plain words that other threads may read while one writes them. The public settings, the log's
// mask and the states of slots are declared as plain integers, so each access says its own order.
#ifndef HEARTH_BASE_ATOMIC_WORD_H
#define HEARTH_BASE_ATOMIC_WORD_H

namespace hearth {

// Relaxed: the word alone is read or written in one piece; nothing else is ordered by it.
template <typename Word>
inline Word relaxedLoad(const Word& word) {
  return __atomic_load_n(&word, __ATOMIC_RELAXED);
}

template <typename Word>
inline void relaxedStore(Word& word, Word value) {
  __atomic_store_n(&word, value, __ATOMIC_RELAXED);
}

// Acquire and release: whoever loads the value also sees everything that was written before it was
// stored.
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
