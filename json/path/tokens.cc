// The path is copied whole and cut where the copy lies: each dot becomes a NUL, and the character
// behind it starts the next token. The table of starts has one entry more than there are tokens. It
// says where one more would start, and so gives the last token a length too.
#include "json/path/tokens.h"

#include <algorithm>
#include <new>

namespace hearth {

void PathTokens::cutInRoom(const char* path, std::size_t size) {
  char** start = starts_;
  char* const end = *start + size;
  char* place = static_cast<char*>(std::memcpy(*start, path, size + 1));
  while ((place = strchrnul(place, '.')) != end) {
    *place++ = '\0';
    *++start = place;
  }
  // What follows the last dot is a token only if there is something.
  if (*start != end) {
    *++start = end + 1;
  }
  count_ = static_cast<std::size_t>(start - starts_);
}

// The starts and the text share one piece of memory, which is sized for both.
bool PathTokens::makeRoom(const char* path, std::size_t size) {
  const auto dots = static_cast<std::size_t>(std::count(path, path + size, '.'));
  const std::size_t starts = dots + 2;
  const std::size_t text = size / sizeof(char*) + 1;
  long_.reset(new (std::nothrow) char*[starts + text]);
  if (long_ == nullptr) {
    return false;
  }
  starts_ = long_.get();
  starts_[0] = reinterpret_cast<char*>(starts_ + starts);
  return true;
}

}  // namespace hearth
