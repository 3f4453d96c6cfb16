// A text read from its start, piece by piece: what the checkers of formats are written in.
#ifndef HEARTH_SCHEMA_FORMAT_READER_H
#define HEARTH_SCHEMA_FORMAT_READER_H

#include <cstddef>
#include <string_view>

namespace hearth {
namespace schema {

inline bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
inline bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The value of a hexadecimal digit, or -1.
inline int hexValue(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return isDigit(c) ? c - '0' : lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  [[nodiscard]] bool atEnd() const { return rest_.empty(); }
  [[nodiscard]] std::string_view rest() const { return rest_; }
  // The next character; NUL at the end.
  [[nodiscard]] char peek() const { return rest_.empty() ? '\0' : rest_.front(); }

  // Skips the character if it is the next one.
  bool skip(char c) {
    if (rest_.empty() || rest_.front() != c) {
      return false;
    }
    rest_.remove_prefix(1);
    return true;
  }

  // Skips a letter in either case, given as the small one.
  bool skipLetter(char small) { return skip(small) || skip(static_cast<char>(small & ~0x20)); }

  // Skips all digits and tells how many there were.
  size_t skipDigits() {
    size_t count = 0;
    while (isDigit(peek())) {
      rest_.remove_prefix(1);
      ++count;
    }
    return count;
  }

  // A number of exactly this many decimal digits, or -1.
  int number(size_t digits) {
    int value = 0;
    for (size_t i = 0; i < digits; ++i) {
      if (!isDigit(peek())) {
        return -1;
      }
      value = value * 10 + (peek() - '0');
      rest_.remove_prefix(1);
    }
    return value;
  }

 private:
  std::string_view rest_;
};

}  // namespace schema
}  // namespace hearth

#endif
