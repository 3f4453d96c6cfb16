// How a schema says which draft it is of and what it is called, and the hashes by which such names
// are found.
#ifndef HEARTH_SCHEMA_RESOURCE_IDENTIFIERS_H
#define HEARTH_SCHEMA_RESOURCE_IDENTIFIERS_H

#include <json-c/json.h>

#include <cstdint>
#include <string_view>

#include "base/json_ref.h"
#include "schema/resource/metaschemas.h"
#include "schema/text.h"

namespace hearth::schema {

inline uint32_t hashAddress(const void* address) {
  const auto bits = reinterpret_cast<uintptr_t>(address);
  return static_cast<uint32_t>(bits >> 4) * 2654435761U;
}

inline uint32_t hashAnchor(uint32_t resource, std::string_view name) {
  return hashText(name, resource * 2654435761U + 1);
}

// The text of a member that is a string; no data() when it is none.
inline std::string_view textMember(json_object* object, const char* name) {
  json_object* const member = memberOf(object, name);
  return json_object_get_type(member) == json_type_string ? textOf(member) : std::string_view();
}

inline bool isObject(json_object* value) {
  return json_object_get_type(value) == json_type_object;
}

// The draft that the schema names by a known metaschema, else that of the resource around it.
inline Draft draftOf(json_object* schema, Draft around) {
  Draft draft = around;
  const std::string_view uri = textMember(schema, "$schema");
  return uri.data() != nullptr && isMetaschema(uri, draft) ? draft : around;
}

// The identifier of a schema; no data() when it has none. Up to draft-07 one beside a reference
// does not count.
inline std::string_view idOf(json_object* schema, Draft draft) {
  const std::string_view id = textMember(schema, draft == Draft::k4 ? "id" : "$id");
  const bool isVoid =
      id.data() != nullptr && draft <= Draft::k7 && textMember(schema, "$ref").data() != nullptr;
  return isVoid ? std::string_view() : id;
}

}  // namespace hearth::schema

#endif
