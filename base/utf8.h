// UTF-8, read and written: the one place that knows how characters stand in bytes. Overlong forms,
// surrogates, values beyond U+10FFFF and sequences that are cut short are no characters.
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

// What stands at the start of a text: a character, or one byte that is none.
struct Character {
  uint32_t code;  // of the byte where it is no character
  size_t size;    // in bytes
  bool isValid;
};

// Requires a text that is not empty.
[[nodiscard]] Character firstCharacter(std::string_view text);

// Takes the first character off the text. False, taking nothing, when there is none.
[[nodiscard]] bool takeCharacter(std::string_view* text, uint32_t* code);

[[nodiscard]] bool isUtf8(std::string_view text);

// How many characters a text has. Requires UTF-8; of other bytes, each that could only continue a
// character counts nothing.
[[nodiscard]] inline size_t countCharacters(std::string_view text) {
  size_t count = 0;
  for (const char c : text) {
    count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }
  return count;
}

// The start of a text, of at most so many bytes, that ends between two characters.
[[nodiscard]] std::string_view startOf(std::string_view text, size_t mostBytes);

// Requires a code point that is no surrogate, for the result to be UTF-8.
void appendCharacter(uint32_t code, std::string* text);

}  // namespace hearth

#endif
