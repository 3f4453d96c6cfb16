// Texts as several rooms of the validator need them: of json-c strings, put together, hashed.
#ifndef HEARTH_SCHEMA_TEXT_H
#define HEARTH_SCHEMA_TEXT_H

#include <json-c/json.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace hearth::schema {

// The text of a json-c string, with the NULs inside it. Borrowed from the value.
inline std::string_view textOf(json_object* string) {
  return {json_object_get_string(string),
          static_cast<std::size_t>(json_object_get_string_len(string))};
}

// Puts several texts behind `out`, or together, without a temporary string for each.
void append(std::initializer_list<std::string_view> texts, std::string& out);
std::string joined(std::initializer_list<std::string_view> texts);

// A number in decimal digits.
std::string decimal(uint64_t number);

// FNV-1a. Equal hashes can be made on purpose, so whoever looks entries up by one spends effort on
// each step of the search.
inline uint32_t hashText(std::string_view text, uint32_t hash = 2166136261U) {
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  }
  return hash;
}

}  // namespace hearth::schema

#endif
