// The keyword `format`: every format is one question about a text.
#ifndef HEARTH_SCHEMA_FORMAT_FORMAT_H
#define HEARTH_SCHEMA_FORMAT_FORMAT_H

#include <string_view>

#include "schema/keywords/assertions.h"

namespace hearth::schema {

// True when the text is of the format. An unknown format accepts every text.
[[nodiscard]] bool hasFormat(std::string_view text, std::string_view format, Workshop& workshop);

// The formats by what they are about. Each costs in proportion to the text; hasFormat() has spent
// effort for it.
bool isDate(std::string_view text);
bool isTime(std::string_view text);
bool isDateTime(std::string_view text);
bool isDuration(std::string_view text);

bool isIpv4(std::string_view text);
bool isIpv6(std::string_view text);
bool isUuid(std::string_view text);

bool isJsonPointer(std::string_view text);
bool isRelativeJsonPointer(std::string_view text);

// The international ones allow characters beyond ASCII.
bool isUri(std::string_view text, bool international);
bool isUriReference(std::string_view text, bool international);
bool isUriTemplate(std::string_view text);

bool isHostname(std::string_view text, bool international, Patterns& patterns);
bool isEmail(std::string_view text, bool international, Patterns& patterns);

}  // namespace hearth::schema

#endif
