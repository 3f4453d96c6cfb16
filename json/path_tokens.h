// A path cut into its tokens.
//
// Every "." ends the token before it, which may be empty; what follows the last "." is a token only
// if there is something: "a..b" is "a", "", "b", and "a." is "a". The path is copied once and its
// dots become NULs, so that each token is already the C string that json-c looks up. Paths of a
// usual size stay inside the object; only longer ones take memory from the heap.
#ifndef HEARTH_JSON_PATH_TOKENS_H
#define HEARTH_JSON_PATH_TOKENS_H

#include <cstddef>
#include <memory>

namespace hearth {

class PathTokens {
 public:
  explicit PathTokens(const char* path);

  PathTokens(const PathTokens&) = delete;
  PathTokens& operator=(const PathTokens&) = delete;

  // 0 for an empty path, and when there was no memory for a very long one.
  std::size_t count() const { return count_; }

  const char* operator[](std::size_t i) const { return starts_[i]; }
  const char* last() const { return starts_[count_ - 1]; }

  // Characters of a token. Each is followed by one NUL and then the next token, or the end.
  std::size_t length(std::size_t i) const {
    return static_cast<std::size_t>(starts_[i + 1] - starts_[i]) - 1;
  }

 private:
  static constexpr std::size_t kInlineBytes = 192;
  static constexpr std::size_t kInlineStarts = 25;

  bool cut(char* text, std::size_t size);
  bool moveStartsToHeap(const char* rest);

  std::size_t count_ = 0;
  std::size_t capacity_ = kInlineStarts;
  const char** starts_ = inlineStarts_;  // of every token, and where one more would start
  std::unique_ptr<const char*[]> heapStarts_;
  std::unique_ptr<char[]> heapText_;
  const char* inlineStarts_[kInlineStarts];
  char inlineText_[kInlineBytes];
};

}  // namespace hearth

#endif
