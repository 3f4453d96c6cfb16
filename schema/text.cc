// Putting texts together, and a number in digits.
#include "schema/text.h"

#include <cinttypes>
#include <cstdio>

namespace hearth::schema {

void append(std::initializer_list<std::string_view> texts, std::string& out) {
  for (const std::string_view text : texts) {
    out += text;
  }
}

std::string joined(std::initializer_list<std::string_view> texts) {
  std::string out;
  append(texts, out);
  return out;
}

std::string decimal(uint64_t number) {
  char text[24];
  return {text, static_cast<std::size_t>(snprintf(text, sizeof(text), "%" PRIu64, number))};
}

}  // namespace hearth::schema
