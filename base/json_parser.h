// The one wrapper of json-c's parser. The library, the validator and the command all parse here.
#ifndef HEARTH_BASE_JSON_PARSER_H
#define HEARTH_BASE_JSON_PARSER_H

#include <json-c/json.h>

#include <cstddef>
#include <string_view>

#include "base/json_ref.h"

namespace hearth {

// The outcome of parsing a text. JSON's null is a value too: it is valid, and `value` stays null.
struct ParsedJson {
  [[nodiscard]] bool isValid() const { return !isOutOfMemory && error == json_tokener_success; }

  JsonRef value;
  json_tokener_error error = json_tokener_success;
  bool isOutOfMemory = false;  // memory ran out, so the text may be right or wrong
  std::size_t end = 0;         // the bytes that the value took, or the position of the error
};

// Parses the first value of the text, down to json-c's default depth. `flags` are json-c's: without
// any, comments and text behind the value are passed over. The end of the text ends the value, so a
// lone number or word needs no blank behind it.
// Failure: `value` is null and isValid() is false; `error` and `end` say what is wrong and where.
// Requires a text of at most INT_MAX bytes. Threads: any.
[[nodiscard]] ParsedJson parseJson(std::string_view text, int flags = 0);

}  // namespace hearth

#endif
