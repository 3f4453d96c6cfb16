// The keywords contentEncoding and contentMediaType, which draft-07 lets a validator check.
#ifndef HEARTH_SCHEMA_KEYWORDS_CONTENT_H
#define HEARTH_SCHEMA_KEYWORDS_CONTENT_H

#include <string_view>

#include "schema/effort.h"

struct json_object;

namespace hearth {
namespace schema {

// Whether the text is base64, if that is the encoding.
[[nodiscard]] bool isEncoded(std::string_view text, std::string_view encoding, Effort& effort);

// Whether the text, decoded as the schema's contentEncoding says, is JSON, if that is the type.
[[nodiscard]] bool isOfMediaType(std::string_view text, std::string_view type, json_object* schema,
                                 Effort& effort);

}  // namespace schema
}  // namespace hearth

#endif
