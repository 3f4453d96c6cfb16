// Labels of international host names as ASCII (RFC 3492).
#ifndef HEARTH_SCHEMA_FORMAT_PUNYCODE_H
#define HEARTH_SCHEMA_FORMAT_PUNYCODE_H

#include <string>
#include <string_view>

namespace hearth::schema {

// Appends to `utf8` what stands behind "xn--". False when it is no punycode.
[[nodiscard]] bool decodePunycode(std::string_view text, std::string& utf8);

// The reverse: appends to `text`, which must be empty. False when the characters are not UTF-8 or
// too many for a label.
[[nodiscard]] bool encodePunycode(std::string_view utf8, std::string& text);

}  // namespace hearth::schema

#endif
