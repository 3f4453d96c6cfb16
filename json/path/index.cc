// The reading goes in four steps: blanks, one sign, digits, blanks. Whatever the digits stop at is
// left over. A negative number wraps modulo 2^32, but a positive one that is too large becomes
// 2^32 - 1: hence the two results of readDigits.
#include "json/path/index.h"

#include <cstdio>
#include <limits>

namespace hearth {
namespace {

// Tells white space as isspace does in the C locale, whatever locale the backend has set.
bool isSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

const char* skipSpace(const char* text, const char* end) {
  while (text != end && isSpace(*text)) {
    ++text;
  }
  return text;
}

struct Digits {
  uint32_t wrapped = 0;  // modulo 2^32
  bool tooLarge = false;
};

// Reads the digits at text and moves text past them.
Digits readDigits(const char*& text, const char* end) {
  Digits digits;
  constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();
  for (; text != end && isDigit(*text); ++text) {
    const uint64_t longer = uint64_t{digits.wrapped} * 10 + static_cast<uint32_t>(*text - '0');
    digits.tooLarge = digits.tooLarge || longer > kLargest;
    digits.wrapped = static_cast<uint32_t>(longer);
  }
  return digits;
}

}  // namespace

IndexText readIndexText(const char* text, std::size_t size) {
  const char* const end = text + size;
  text = skipSpace(text, end);
  if (text == end) {
    return {true, false, 0};
  }
  const bool negative = *text == '-';
  if (negative || *text == '+') {
    ++text;
  }
  const Digits digits = readDigits(text, end);
  IndexText result = {false, skipSpace(text, end) != end, digits.wrapped};
  if (negative) {
    result.value = 0U - digits.wrapped;
  } else if (digits.tooLarge) {
    result.value = std::numeric_limits<uint32_t>::max();
  }
  return result;
}

bool hasDigits(const char* token, std::size_t length) {
  const char* const end = token + length - 1;
  const char* text = skipSpace(token + 1, end);
  text += *text == '-' || *text == '+' ? 1 : 0;
  return text != end && isDigit(*text);
}

bool indexOfAnyToken(const char* token, std::size_t length, uint32_t& index) {
  if (length < kShortestIndexToken) {
    return false;
  }
  // Not between the brackets but between the first and the last character: "[1x" is 1.
  const IndexText read = readIndexText(token + 1, length - 2);
  if (read.hasLeftover) {
    std::printf("EXCEPTION: BE_StrTo: something unexpected happened");
  }
  index = read.value;
  return !read.blank;
}

}  // namespace hearth
