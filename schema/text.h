// Texts as the validator needs them.
#ifndef HEARTH_SCHEMA_TEXT_H
#define HEARTH_SCHEMA_TEXT_H

#include <json-c/json.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace hearth {
namespace schema {

// Text of a json-c string, with the NULs inside it.
inline std::string_view textOf(json_object* string) {
  return {json_object_get_string(string), static_cast<size_t>(json_object_get_string_len(string))};
}

// Several texts behind a first one, and one text of several: without a temporary one for each.
void append(std::string* out, std::initializer_list<std::string_view> texts);
std::string joined(std::initializer_list<std::string_view> texts);

// A number in digits.
std::string decimal(uint64_t number);

// FNV-1a. Equal hashes can be made on purpose: whoever looks entries up by it counts his steps.
inline uint32_t hashText(std::string_view text, uint32_t hash = 2166136261U) {
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  }
  return hash;
}

}  // namespace schema
}  // namespace hearth

#endif
