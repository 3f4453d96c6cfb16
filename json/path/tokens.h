// A path cut into its tokens.
//
// Every "." ends the token before it, which may be empty; what follows the last "." is a token only
// if there is something: "a..b" is "a", "", "b", and "a." is "a". The path is copied once and its
// dots become NULs, so that each token is already the C string that json-c looks up. Paths of a
// usual size stay inside the object; only longer ones take memory from the heap.
#ifndef HEARTH_JSON_PATH_TOKENS_H
#define HEARTH_JSON_PATH_TOKENS_H

#include <cstddef>
#include <cstring>
#include <memory>

namespace hearth {

class PathTokens {
 public:
  PathTokens() { usualStarts_[0] = usualText_; }
  PathTokens(const PathTokens&) = delete;
  PathTokens& operator=(const PathTokens&) = delete;

  // Cuts a path that is not empty. False when there is no memory for a very long one.
  [[nodiscard]] bool cut(const char* path) {
    const std::size_t size = std::strlen(path);
    if (size > kUsualSize && !makeRoom(path, size)) {
      return false;
    }
    cutInRoom(path, size);
    return true;
  }

  // Stands at one token in the table of all: `*cursor` is its C string, `cursor + 1` the next
  // token.
  using Cursor = const char* const*;

  Cursor first() const { return starts_; }

  // At least 1 after a cut.
  std::size_t count() const { return count_; }
  const char* last() const { return starts_[count_ - 1]; }

  // The number of characters in a token. Each token is followed by one NUL and then by the next
  // token or the end.
  static std::size_t lengthAt(Cursor cursor) {
    return static_cast<std::size_t>(cursor[1] - cursor[0]) - 1;
  }

 private:
  static constexpr std::size_t kUsualSize = 120;

  // Room for the starts and the text of a long path; the first start says where the text goes.
  [[nodiscard]] bool makeRoom(const char* path, std::size_t size);
  void cutInRoom(const char* path, std::size_t size);

  std::size_t count_;
  char** starts_ = usualStarts_;       // of every token, and where one more would start
  std::unique_ptr<char*[]> long_;      // starts and then text of a path longer than usual
  char* usualStarts_[kUsualSize + 2];  // as many as a usual path can have, all of it dots
  char usualText_[kUsualSize + 1];
};

}  // namespace hearth

#endif
