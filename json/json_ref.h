// An owner of one reference of a json-c value.
#ifndef HEARTH_JSON_JSON_REF_H
#define HEARTH_JSON_JSON_REF_H

#include <json-c/json.h>

#include <memory>

namespace hearth {

struct PutJson {
  void operator()(json_object* value) const { json_object_put(value); }
};

// Holds one reference and gives it back; JsonRef(json_object_get(value)) shares a borrowed value.
using JsonRef = std::unique_ptr<json_object, PutJson>;

}  // namespace hearth

#endif
