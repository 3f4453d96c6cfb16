#include "json/path_tokens.h"

#include <endian.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace hearth {
namespace {

// The bytes of a word, the first one lowest whatever the machine's byte order.
std::size_t loadWord(const char* bytes) {
  std::size_t word;
  std::memcpy(&word, bytes, sizeof word);
  if constexpr (sizeof word == sizeof(uint64_t)) {
    return le64toh(word);
  } else {
    return le32toh(static_cast<uint32_t>(word));
  }
}

// The word with the highest bit of each byte set where that is a dot, and all other bits clear.
std::size_t dotsIn(std::size_t word) {
  constexpr std::size_t kEachByte = ~std::size_t{0} / 0xff;
  constexpr std::size_t kLowBits = kEachByte * 0x7f;
  const std::size_t differences = word ^ (kEachByte * '.');
  return ~(((differences & kLowBits) + kLowBits) | differences | kLowBits);
}

// Which byte of a word the first of its dots is.
std::size_t firstByte(std::size_t dots) {
  return static_cast<std::size_t>(__builtin_ctzl(dots)) / 8;
}

}  // namespace

bool PathTokens::cut(const char* path) {
  const std::size_t size = std::strlen(path);
  char* const text = size <= kUsualSize ? usualText_ : makeRoom(path, size);
  if (text == nullptr) {
    return false;
  }
  std::memcpy(text, path, size);
  // What is read past the end of the text holds no dots.
  std::memset(text + size, '\0', sizeof(Word));
  char** start = starts_;
  *start = text;
  char* const end = text + size;
  for (char* bytes = text; bytes < end; bytes += sizeof(Word)) {
    for (std::size_t dots = dotsIn(loadWord(bytes)); dots != 0; dots &= dots - 1) {
      char* const dot = bytes + firstByte(dots);
      *dot = '\0';
      *++start = dot + 1;
    }
  }
  if (*start != end) {
    *++start = end + 1;
  }
  count_ = static_cast<std::size_t>(start - starts_);
  return true;
}

// For the starts and the text of a long path; null without memory, else where the text goes.
char* PathTokens::makeRoom(const char* path, std::size_t size) {
  const auto dots = static_cast<std::size_t>(std::count(path, path + size, '.'));
  const std::size_t starts = dots + 2;
  const std::size_t text = (size + sizeof(Word)) / sizeof(char*) + 1;
  long_.reset(new (std::nothrow) char*[starts + text]);
  if (long_ == nullptr) {
    return nullptr;
  }
  starts_ = long_.get();
  return reinterpret_cast<char*>(starts_ + starts);
}

}  // namespace hearth
