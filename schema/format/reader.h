// Reads a text from its start, piece by piece. Most formats are checked with it: each piece is
// skipped or read, and a format is met when nothing is left.
#ifndef HEARTH_SCHEMA_FORMAT_READER_H
#define HEARTH_SCHEMA_FORMAT_READER_H

#include <cstddef>
#include <string_view>

#include "base/ascii.h"

namespace hearth::schema {

class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  [[nodiscard]] bool atEnd() const { return rest_.empty(); }
  [[nodiscard]] std::string_view rest() const { return rest_; }
  // The next character; NUL at the end.
  [[nodiscard]] char peek() const { return rest_.empty() ? '\0' : rest_.front(); }

  // Skips the character if it is the next one. False when another one is, or none.
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
  std::size_t skipDigits() {
    std::size_t count = 0;
    while (isDigit(peek())) {
      rest_.remove_prefix(1);
      ++count;
    }
    return count;
  }

  // Reads a number of exactly this many decimal digits, few enough for an int; -1 when there are
  // fewer.
  int readNumber(std::size_t digits) {
    int value = 0;
    for (std::size_t i = 0; i < digits; ++i) {
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

}  // namespace hearth::schema

#endif
