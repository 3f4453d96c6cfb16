// Texts that hold an encoded document: decodes base64 and parses JSON to see if they are what the
// schema says. Nothing is kept of either. Both cost in proportion to the text, so effort is spent
// before they start.
#include "schema/keywords/content.h"

#include <climits>
#include <cstring>
#include <string>

#include "base/json_parser.h"

namespace hearth::schema {
namespace {

// The six bits that a character of base64 stands for; -1 for any other character.
int sextet(char c) {
  static constexpr char kAlphabet[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const char* const found = c != '\0' ? strchr(kAlphabet, c) : nullptr;
  return found != nullptr ? static_cast<int>(found - kAlphabet) : -1;
}

// Base64 as RFC 4648 has it: whole groups of four, the last one padded. Each character brings six
// bits, and whenever eight or more are held, the eldest eight leave as a byte.
bool decodeBase64(std::string_view text, std::string& decoded) {
  if (text.size() % 4 != 0) {
    return false;
  }
  for (int padding = 0; padding < 2 && !text.empty() && text.back() == '='; ++padding) {
    text.remove_suffix(1);
  }
  unsigned bits = 0;
  int held = 0;
  for (const char c : text) {
    const int value = sextet(c);
    if (value < 0) {
      return false;
    }
    bits = bits << 6 | static_cast<unsigned>(value);
    held += 6;
    if (held >= 8) {
      held -= 8;
      decoded += static_cast<char>(bits >> held & 0xFF);
    }
  }
  return true;
}

bool isJson(std::string_view text) {
  if (text.size() > INT_MAX) {
    return false;
  }
  const ParsedJson parsed = parseJson(text, JSON_TOKENER_STRICT);
  // Text behind the value would make the document no JSON; the parser only passes it over.
  return parsed.isValid() && parsed.end >= text.size();
}

}  // namespace

bool isEncoded(std::string_view text, std::string_view encoding, Effort& effort) {
  std::string decoded;
  return encoding != "base64" || (effort.spend(text.size() / 4) && decodeBase64(text, decoded));
}

// A text that says it is base64 is decoded first.
bool isOfMediaType(std::string_view text, std::string_view type, json_object* schema,
                   Effort& effort) {
  if (type != "application/json") {
    return true;
  }
  if (!effort.spend(text.size())) {
    return false;
  }
  json_object* encoding = nullptr;
  if (!json_object_object_get_ex(schema, "contentEncoding", &encoding) ||
      json_object_get_type(encoding) != json_type_string ||
      strcmp(json_object_get_string(encoding), "base64") != 0) {
    return isJson(text);
  }
  std::string decoded;
  return !decodeBase64(text, decoded) || isJson(decoded);
}

}  // namespace hearth::schema
