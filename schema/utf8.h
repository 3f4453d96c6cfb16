// Code points and their UTF-8 bytes.
#ifndef HEARTH_SCHEMA_UTF8_H
#define HEARTH_SCHEMA_UTF8_H

#include <cstdint>
#include <string>
#include <string_view>

namespace hearth {
namespace schema {

// Takes the first code point off the text; false, taking nothing, when it is not well formed.
inline bool takeUtf8(std::string_view* text, uint32_t* code) {
  if (text->empty()) {
    return false;
  }
  const auto lead = static_cast<unsigned char>(text->front());
  const size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if ((lead & 0xC0) == 0x80 || lead > 0xF4 || text->size() < size) {
    return false;
  }
  *code = size == 1 ? lead : lead & (0x7FU >> size);
  for (size_t i = 1; i < size; ++i) {
    const auto next = static_cast<unsigned char>((*text)[i]);
    if ((next & 0xC0) != 0x80) {
      return false;
    }
    *code = *code << 6 | (next & 0x3FU);
  }
  text->remove_prefix(size);
  return *code <= 0x10FFFF;
}

inline void appendUtf8(uint32_t code, std::string* text) {
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

}  // namespace schema
}  // namespace hearth

#endif
