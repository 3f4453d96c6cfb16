// Reads the index tokens of a path, such as "[3]".
//
// The text between the first and the last character is read as a number, forgivingly: blanks around
// it are skipped, a negative number wraps modulo 2^32, one that is too large becomes 2^32 - 1, and
// text that is no number counts as 0. What is left over after the number is reported on standard
// output and otherwise ignored.
#ifndef HEARTH_JSON_PATH_INDEX_H
#define HEARTH_JSON_PATH_INDEX_H

#include <cstddef>
#include <cstdint>

#include "base/ascii.h"

namespace hearth {

inline bool isIndexToken(const char* token) {
  return token[0] == '[';
}

struct IndexText {
  bool blank;        // nothing but white space: there is no index
  bool hasLeftover;  // text other than white space follows the number
  uint32_t value;
};

// Reads the `size` bytes at `text`. Has no side effect.
[[nodiscard]] IndexText readIndexText(const char* text, std::size_t size);

// The index of an index token of `length` characters. False when it carries none: it is shorter
// than 3 characters, or blank inside.
[[nodiscard]] bool indexOfAnyToken(const char* token, std::size_t length, uint32_t& index);

// False when the index of an index token is 0 only because its text is no number: "[x]", "[+]".
// Requires a token that carries an index.
[[nodiscard]] bool hasDigits(const char* token, std::size_t length);

constexpr std::size_t kShortestIndexToken = 3;

// Does what indexOfAnyToken does, on the spot for an index of one digit: nearly every one is.
[[nodiscard]] inline bool indexOfToken(const char* token, std::size_t length, uint32_t& index) {
  if (length == kShortestIndexToken && isDigit(token[1])) {
    index = static_cast<uint32_t>(token[1] - '0');
    return true;
  }
  return indexOfAnyToken(token, length, index);
}

}  // namespace hearth

#endif
