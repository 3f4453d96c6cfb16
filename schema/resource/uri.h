// URI references, as far as identifiers and references of schemas need them (RFC 3986, section 5).
#ifndef HEARTH_SCHEMA_RESOURCE_URI_H
#define HEARTH_SCHEMA_RESOURCE_URI_H

#include <string>
#include <string_view>

namespace hearth {
namespace schema {

// Longer identifiers and references are not resolved.
constexpr size_t kLongestUri = 2048;

// The reference seen from the base, without its fragment.
std::string resolveUri(std::string_view base, std::string_view reference);

// What follows the '#', and what precedes it.
std::string_view fragmentOf(std::string_view reference);
std::string_view withoutFragment(std::string_view reference);

// %41 becomes A; other text stays.
std::string percentDecoded(std::string_view text);

}  // namespace schema
}  // namespace hearth

#endif
