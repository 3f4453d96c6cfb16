// Values as JSON text.
//
// Threads: one at a time per document, also for reading: json-c keeps a text with its value.
#ifndef HEARTH_KIT_RENDER_H
#define HEARTH_KIT_RENDER_H

#include <json-c/json.h>

#include <string>

#include "hearth/kit/handle.h"
#include "hearth/kit/walk.h"

namespace hearth {

enum class Layout { kOneLine, kIndented };

namespace detail {

// What the parser reads has at most this many containers in each other.
constexpr int kParserLevels = JSON_TOKENER_DEFAULT_DEPTH - 1;

// What walks by recursion goes this deep, so that it needs no large stack.
constexpr int kMostLevels = 256;

inline bool isNestedDeeperThan(View value, int levels) {
  const bool isContainer = value.isObject() || value.isArray();
  if (isContainer && levels == 0) {
    return true;
  }
  for (const Member& member : members(value)) {
    if (isNestedDeeperThan(member.value, levels - 1)) {
      return true;
    }
  }
  for (const View element : elements(value)) {
    if (isNestedDeeperThan(element, levels - 1)) {
      return true;
    }
  }
  return false;
}

}  // namespace detail

// The value as text, secrets included; "null" for nothing, and empty for a value nested more than
// 256 levels deep. See shown() in secrets.h for a text to log.
inline std::string toText(View value, Layout layout = Layout::kOneLine) {
  if (detail::isNestedDeeperThan(value, detail::kMostLevels)) {
    return {};
  }
  const int flags = layout == Layout::kOneLine ? JSON_C_TO_STRING_PLAIN
                                               : JSON_C_TO_STRING_PRETTY | JSON_C_TO_STRING_SPACED;
  std::size_t size = 0;
  const char* const text =
      json_object_to_json_string_length(value.raw(), flags | JSON_C_TO_STRING_NOSLASHESCAPE, &size);
  return text != nullptr ? std::string(text, size) : std::string();
}

}  // namespace hearth

#endif
