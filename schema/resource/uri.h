// URI references, as far as identifiers and references of schemas need them (RFC 3986, section 5).
#ifndef HEARTH_SCHEMA_RESOURCE_URI_H
#define HEARTH_SCHEMA_RESOURCE_URI_H

#include <string>
#include <string_view>

namespace hearth::schema {

// Longer identifiers and references are not resolved.
constexpr std::size_t kLongestUri = 2048;

// What the reference means where `base` is the base URI, without its fragment.
std::string resolveUri(std::string_view base, std::string_view reference);

// What stands behind the '#', and what before it.
std::string_view fragmentOf(std::string_view reference);
std::string_view withoutFragment(std::string_view reference);

// %41 becomes A; other text stays.
std::string percentDecoded(std::string_view text);

}  // namespace hearth::schema

#endif
