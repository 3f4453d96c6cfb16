// The keywords contentEncoding and contentMediaType, which draft-07 lets a validator check.
#ifndef HEARTH_SCHEMA_KEYWORDS_CONTENT_H
#define HEARTH_SCHEMA_KEYWORDS_CONTENT_H

#include <string_view>

#include "schema/effort.h"

struct json_object;

namespace hearth::schema {

// True when the text is in the encoding. Only base64 is known; any other encoding accepts every
// text.
[[nodiscard]] bool isEncoded(std::string_view text, std::string_view encoding, Effort& effort);

// True when the text, decoded as the schema's contentEncoding says, is of the media type. Only
// application/json is known; any other type accepts every text, and so does a text that cannot be
// decoded, which contentEncoding refuses.
[[nodiscard]] bool isOfMediaType(std::string_view text, std::string_view type, json_object* schema,
                                 Effort& effort);

}  // namespace hearth::schema

#endif
