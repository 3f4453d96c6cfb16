// The one wrapper of json-c's parser: for the library, the validator and the command.
#ifndef HEARTH_BASE_JSON_PARSER_H
#define HEARTH_BASE_JSON_PARSER_H

#include <json-c/json.h>

#include <cstddef>
#include <string_view>

#include "base/json_ref.h"

namespace hearth {

// What a text came to. JSON's null is a value too: it parses, and `value` stays null.
struct ParsedJson {
  [[nodiscard]] bool isValid() const { return !isOutOfMemory && error == json_tokener_success; }

  JsonRef value;
  json_tokener_error error = json_tokener_success;
  bool isOutOfMemory = false;  // nothing can be said about the text
  std::size_t end = 0;         // how many bytes the value took, or where the error is
};

// Parses the first value of a text of fewer than 2 GiB, with json-c's default depth. `flags` are
// json-c's: without any, comments and text behind the value are passed over. The end of the text
// ends the value: a lone number or word needs no blank behind it.
[[nodiscard]] ParsedJson parseJson(std::string_view text, int flags = 0);

}  // namespace hearth

#endif
