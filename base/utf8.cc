// A character is a lead byte and up to three continuation bytes. The lead byte's high bits tell the
// length, each continuation byte (10xxxxxx) adds six bits:
//
//   0xxxxxxx  1 byte    110xxxxx  2 bytes    1110xxxx  3 bytes    11110xxx  4 bytes
//
// Reading decodes by that rule first and then refuses what it lets through too much: codes that a
// shorter form could hold, surrogates, and codes beyond the last one.
#include "base/utf8.h"

namespace hearth {
namespace {

constexpr std::size_t kLongest = 4;

unsigned char byteOf(char c) {
  return static_cast<unsigned char>(c);
}

// The length in bytes of a character with this lead byte; 0 when no character begins with it.
std::size_t lengthFor(unsigned char lead) {
  return lead < 0x80   ? 1
         : lead < 0xC0 ? 0
         : lead < 0xE0 ? 2
         : lead < 0xF0 ? 3
         : lead < 0xF8 ? 4
                       : 0;
}

// The least code that needs this many bytes.
uint32_t leastCodeOf(std::size_t size) {
  return size < 2 ? 0 : size == 2 ? 0x80 : size == 3 ? 0x800 : 0x10000;
}

}  // namespace

Character firstCharacter(std::string_view text) {
  const unsigned char lead = byteOf(text.front());
  const Character none = {lead, 1, false};
  const std::size_t size = lengthFor(lead);
  if (size == 0 || text.size() < size) {
    return none;
  }
  uint32_t code = size == 1 ? lead : lead & (0x7FU >> size);
  for (std::size_t i = 1; i < size; ++i) {
    if (!isContinuation(text[i])) {
      return none;
    }
    code = code << 6 | (byteOf(text[i]) & 0x3FU);
  }
  const bool isValid = code >= leastCodeOf(size) && code <= kLastCodePoint && !isSurrogate(code);
  return isValid ? Character{code, size, true} : none;
}

bool takeCharacter(std::string_view& text, uint32_t& code) {
  if (text.empty()) {
    return false;
  }
  const Character character = firstCharacter(text);
  if (character.isValid) {
    code = character.code;
    text.remove_prefix(character.size);
  }
  return character.isValid;
}

bool isUtf8(std::string_view text) {
  uint32_t code = 0;
  while (takeCharacter(text, code)) {
  }
  return text.empty();
}

// Steps back to the character that the limit cuts. Bytes that are no UTF-8 are stepped over only as
// far as a character could reach.
std::string_view startOf(std::string_view text, std::size_t mostBytes) {
  if (text.size() <= mostBytes) {
    return text;
  }
  std::size_t end = mostBytes;
  while (end > 0 && mostBytes - end < kLongest && isContinuation(text[end])) {
    --end;
  }
  return text.substr(0, end);
}

void appendCharacter(uint32_t code, std::string& text) {
  if (code < 0x80) {
    text += static_cast<char>(code);
    return;
  }
  const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;  // continuation bytes
  text += static_cast<char>((0xFF << (7 - more) & 0xFF) | code >> 6 * more);
  for (int i = more - 1; i >= 0; --i) {
    text += static_cast<char>(0x80 | (code >> 6 * i & 0x3F));
  }
}

}  // namespace hearth
