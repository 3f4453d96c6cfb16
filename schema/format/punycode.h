// Labels of international host names as ASCII (RFC 3492).
#ifndef HEARTH_SCHEMA_FORMAT_PUNYCODE_H
#define HEARTH_SCHEMA_FORMAT_PUNYCODE_H

#include <string>
#include <string_view>

namespace hearth {
namespace schema {

// What follows "xn--", as UTF-8; false when it is no punycode.
[[nodiscard]] bool decodePunycode(std::string_view text, std::string* utf8);

// The reverse; false when the text is not UTF-8 or too long for a label.
[[nodiscard]] bool encodePunycode(std::string_view utf8, std::string* text);

}  // namespace schema
}  // namespace hearth

#endif
