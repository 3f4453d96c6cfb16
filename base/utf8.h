// UTF-8, read and written. This is the one place that knows how characters are coded in bytes.
// Overlong forms, surrogates, values beyond U+10FFFF and sequences that are cut short are no
// characters.
#ifndef HEARTH_BASE_UTF8_H
#define HEARTH_BASE_UTF8_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace hearth {

constexpr uint32_t kLastCodePoint = 0x10FFFF;

constexpr bool isSurrogate(uint32_t code) {
  return code >= 0xD800 && code <= 0xDFFF;
}

// True for a byte that can only continue a character, never begin one.
constexpr bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The start of a text: a character, or one byte that belongs to none.
struct Character {
  uint32_t code;     // the code point; the byte's value where it is no character
  std::size_t size;  // in bytes
  bool isValid;
};

// Requires a text that is not empty.
[[nodiscard]] Character firstCharacter(std::string_view text);

// Takes the first character off the text. False, taking nothing, when there is none.
[[nodiscard]] bool takeCharacter(std::string_view& text, uint32_t& code);

[[nodiscard]] bool isUtf8(std::string_view text);

// Counts the characters of a text. Requires UTF-8; in other texts, bytes that can only continue a
// character are not counted.
[[nodiscard]] inline std::size_t countCharacters(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text) {
    count += !isContinuation(c);
  }
  return count;
}

// The longest start of the text that has at most so many bytes and ends between two characters.
[[nodiscard]] std::string_view startOf(std::string_view text, std::size_t mostBytes);

// Appends the character to the text. For the result to be UTF-8, the code must be a code point and
// no surrogate.
void appendCharacter(uint32_t code, std::string& text);

}  // namespace hearth

#endif
