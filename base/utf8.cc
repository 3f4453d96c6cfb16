#include "base/utf8.h"

namespace hearth {
namespace {

constexpr size_t kLongest = 4;

unsigned char byteOf(char c) {
  return static_cast<unsigned char>(c);
}

bool continues(char c) {
  return (byteOf(c) & 0xC0) == 0x80;
}

// How many bytes a character has that begins with this one; 0 when none does.
size_t sizeAfter(unsigned char lead) {
  return lead < 0x80   ? 1
         : lead < 0xC0 ? 0
         : lead < 0xE0 ? 2
         : lead < 0xF0 ? 3
         : lead < 0xF8 ? 4
                       : 0;
}

// The least code that needs so many bytes.
uint32_t leastOf(size_t size) {
  return size < 2 ? 0 : size == 2 ? 0x80 : size == 3 ? 0x800 : 0x10000;
}

}  // namespace

Character firstCharacter(std::string_view text) {
  const unsigned char lead = byteOf(text.front());
  const Character none = {lead, 1, false};
  const size_t size = sizeAfter(lead);
  if (size == 0 || text.size() < size) {
    return none;
  }
  uint32_t code = size == 1 ? lead : lead & (0x7FU >> size);
  for (size_t i = 1; i < size; ++i) {
    if (!continues(text[i])) {
      return none;
    }
    code = code << 6 | (byteOf(text[i]) & 0x3FU);
  }
  const bool isValid = code >= leastOf(size) && code <= kLastCodePoint && !isSurrogate(code);
  return isValid ? Character{code, size, true} : none;
}

bool takeCharacter(std::string_view* text, uint32_t* code) {
  if (text->empty()) {
    return false;
  }
  const Character character = firstCharacter(*text);
  if (character.isValid) {
    *code = character.code;
    text->remove_prefix(character.size);
  }
  return character.isValid;
}

bool isUtf8(std::string_view text) {
  uint32_t code = 0;
  while (takeCharacter(&text, &code)) {
  }
  return text.empty();
}

std::string_view startOf(std::string_view text, size_t mostBytes) {
  if (text.size() <= mostBytes) {
    return text;
  }
  size_t end = mostBytes;
  while (end > 0 && mostBytes - end < kLongest && continues(text[end])) {
    --end;
  }
  return text.substr(0, end);
}

void appendCharacter(uint32_t code, std::string* text) {
  if (code < 0x80) {
    *text += static_cast<char>(code);
    return;
  }
  const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  *text += static_cast<char>((0xFF << (7 - more) & 0xFF) | code >> 6 * more);
  for (int i = more - 1; i >= 0; --i) {
    *text += static_cast<char>(0x80 | (code >> 6 * i & 0x3F));
  }
}

}  // namespace hearth
