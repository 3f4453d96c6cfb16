#include "json/path_tokens.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace hearth {

PathTokens::PathTokens(const char* path) {
  const std::size_t size = std::strlen(path);
  char* text = inlineText_;
  if (size >= kInlineBytes) {
    heapText_.reset(new (std::nothrow) char[size + 1]);
    text = heapText_.get();
    if (text == nullptr) {
      return;
    }
  }
  std::memcpy(text, path, size + 1);
  if (!cut(text, size)) {
    count_ = 0;
  }
}

bool PathTokens::cut(char* text, std::size_t size) {
  char* const end = text + size;
  char* token = text;
  while (token != end) {
    if (heapStarts_ == nullptr && count_ + 1 == capacity_ && !moveStartsToHeap(token)) {
      return false;
    }
    starts_[count_++] = token;
    char* dot = static_cast<char*>(std::memchr(token, '.', static_cast<std::size_t>(end - token)));
    if (dot == nullptr) {
      token = end + 1;
      break;
    }
    *dot = '\0';
    token = dot + 1;
  }
  starts_[count_] = token;
  return true;
}

// The tokens still to come are counted first, so once is enough.
bool PathTokens::moveStartsToHeap(const char* rest) {
  const auto dots = std::count(rest, rest + std::strlen(rest), '.');
  capacity_ = count_ + static_cast<std::size_t>(dots) + 2;
  heapStarts_.reset(new (std::nothrow) const char*[capacity_]);
  if (heapStarts_ == nullptr) {
    return false;
  }
  std::copy(starts_, starts_ + count_, heapStarts_.get());
  starts_ = heapStarts_.get();
  return true;
}

}  // namespace hearth
