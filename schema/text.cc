#include "schema/text.h"

#include <cinttypes>
#include <cstdio>

namespace hearth {
namespace schema {

void append(std::string* out, std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    *out += text;
  }
}

std::string joined(std::initializer_list<std::string_view> texts) {
  std::string out;
  append(&out, texts);
  return out;
}

std::string decimal(uint64_t number) {
  char text[24];
  return {text, static_cast<size_t>(snprintf(text, sizeof text, "%" PRIu64, number))};
}

}  // namespace schema
}  // namespace hearth
