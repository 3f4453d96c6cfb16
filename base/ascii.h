// Characters by their class in ASCII, whatever locale the backend has set.
#ifndef HEARTH_BASE_ASCII_H
#define HEARTH_BASE_ASCII_H

namespace hearth {

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

constexpr bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The value of a hexadecimal digit, or -1.
constexpr int hexValue(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return isDigit(c) ? c - '0' : lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace hearth

#endif
