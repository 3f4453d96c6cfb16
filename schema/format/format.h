// The keyword `format`.
#ifndef HEARTH_SCHEMA_FORMAT_FORMAT_H
#define HEARTH_SCHEMA_FORMAT_FORMAT_H

#include <string_view>

#include "schema/keywords/assertions.h"

namespace hearth {
namespace schema {

// Whether the text is of the format; of an unknown format is every text.
[[nodiscard]] bool hasFormat(std::string_view text, std::string_view format, Workshop& workshop);

// The formats, each with what else it needs to know.
bool isDate(std::string_view text);
bool isTime(std::string_view text);
bool isDateTime(std::string_view text);
bool isDuration(std::string_view text);

bool isIpv4(std::string_view text);
bool isIpv6(std::string_view text);
bool isUuid(std::string_view text);

bool isJsonPointer(std::string_view text);
bool isRelativeJsonPointer(std::string_view text);

// International ones allow characters beyond ASCII.
bool isUri(std::string_view text, bool international);
bool isUriReference(std::string_view text, bool international);
bool isUriTemplate(std::string_view text);

bool isHostname(std::string_view text, bool international, Patterns& patterns);
bool isEmail(std::string_view text, bool international, Patterns& patterns);

}  // namespace schema
}  // namespace hearth

#endif
