#include "json/path/tokens.h"

#include <endian.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace hearth {
namespace {

using Word = PathTokens::Word;

// Words hold text with its first byte lowest, whatever the machine's byte order.
Word inTextOrder(Word word) {
  if constexpr (sizeof word == sizeof(uint64_t)) {
    return le64toh(word);
  } else {
    return le32toh(static_cast<uint32_t>(word));
  }
}

Word loadWord(const char* text) {
  Word word;
  std::memcpy(&word, text, sizeof word);
  return inTextOrder(word);
}

void storeWord(char* text, Word word) {
  word = inTextOrder(word);
  std::memcpy(text, &word, sizeof word);
}

// What follows the last whole word of a text, and NULs behind it: at least one.
Word loadLastWord(const char* text, std::size_t size) {
  const std::size_t rest = size % sizeof(Word);
  if (rest == 0) {
    return 0;
  }
  if (size > sizeof(Word)) {
    return loadWord(text + size - sizeof(Word)) >> 8 * (sizeof(Word) - rest);
  }
  Word word = 0;
  for (std::size_t i = rest; i-- > 0;) {
    word = word << 8 | static_cast<unsigned char>(text[i]);
  }
  return word;
}

// The highest bit of each byte that is a dot, and no other bits.
Word dotsIn(Word word) {
  constexpr Word kEachByte = ~Word{0} / 0xff;
  constexpr Word kLowBits = kEachByte * 0x7f;
  const Word differences = word ^ (kEachByte * '.');
  return ~(((differences & kLowBits) + kLowBits) | differences | kLowBits);
}

// Writes a word of the path to its place with NULs for dots, and notes the token behind each dot.
[[gnu::always_inline]] inline char** cutWord(Word word, char* place, char** start) {
  Word dots = dotsIn(word);
  storeWord(place, word ^ (dots >> 7) * '.');
  for (; dots != 0; dots &= dots - 1) {
    *++start = place + static_cast<std::size_t>(__builtin_ctzl(dots)) / 8 + 1;
  }
  return start;
}

}  // namespace

void PathTokens::cutInRoom(const char* path, std::size_t size) {
  char* const text = starts_[0];
  char** start = starts_;
  const std::size_t rest = size % sizeof(Word);
  for (std::size_t position = 0; position != size - rest; position += sizeof(Word)) {
    start = cutWord(loadWord(path + position), text + position, start);
  }
  start = cutWord(loadLastWord(path, size), text + size - rest, start);
  char* const end = text + size;
  if (*start != end) {
    *++start = end + 1;
  }
  count_ = static_cast<std::size_t>(start - starts_);
}

bool PathTokens::makeRoom(const char* path, std::size_t size) {
  const auto dots = static_cast<std::size_t>(std::count(path, path + size, '.'));
  const std::size_t starts = dots + 2;
  const std::size_t text = (size + sizeof(Word)) / sizeof(char*) + 1;
  long_.reset(new (std::nothrow) char*[starts + text]);
  if (long_ == nullptr) {
    return false;
  }
  starts_ = long_.get();
  starts_[0] = reinterpret_cast<char*>(starts_ + starts);
  return true;
}

}  // namespace hearth
