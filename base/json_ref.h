// The owner of a json-c reference, and the look-up of a member: the two tools that every folder
// which works on json-c values needs.
#ifndef HEARTH_BASE_JSON_REF_H
#define HEARTH_BASE_JSON_REF_H

#include <json-c/json.h>

#include <memory>

namespace hearth {

struct PutJson {
  void operator()(json_object* value) const { json_object_put(value); }
};

// Holds one reference and gives it back; JsonRef(json_object_get(value)) shares a borrowed value.
using JsonRef = std::unique_ptr<json_object, PutJson>;

// The member's value, borrowed from the object. Null when there is no such member, when it is
// JSON's null, and when `object` is null or no object.
inline json_object* memberOf(json_object* object, const char* name) {
  json_object* member = nullptr;
  json_object_object_get_ex(object, name, &member);
  return member;
}

}  // namespace hearth

#endif
