// One step of the walk.
#ifndef HEARTH_SCHEMA_WALK_FRAME_H
#define HEARTH_SCHEMA_WALK_FRAME_H

#include <json-c/json.h>

#include <cstddef>
#include <cstdint>

#include "schema/keywords/keywords.h"
#include "schema/keywords/members.h"
#include "schema/resource/resources.h"

namespace hearth::schema {

// A value, the schema it is held against, and the step that led here from the frame around. Frames
// live on the stack and form a list from the innermost one to the root, so the way to a value need
// not be kept anywhere else: a report reads it off the list.
struct Frame {
  const Frame* outer;  // null at the root
  json_object* schema;
  json_object* instance;
  const char* member;   // the step from the outer frame's instance: a member,
  std::size_t element;  // an element, or none (kNoElement)
  ResourceIndex resource;
  uint16_t depth;
  Id via;  // the keyword that led here

  static constexpr std::size_t kNoElement = SIZE_MAX;

  // The frames that follow from this one: the same value against another schema, a member of it,
  // an element of it.
  [[nodiscard]] Frame forSchema(json_object* other, Id keyword) const {
    return {this, other, instance, nullptr, kNoElement, resource, next(), keyword};
  }
  [[nodiscard]] Frame forMember(json_object* other, lh_entry* entry, Id keyword) const {
    return {this,   other,  valueOfMember(entry), nameOfMember(entry), kNoElement, resource,
            next(), keyword};
  }
  [[nodiscard]] Frame forElement(json_object* other, std::size_t i, Id keyword) const {
    return {this,   other,  json_object_array_get_idx(instance, i), nullptr, i, resource,
            next(), keyword};
  }

 private:
  [[nodiscard]] uint16_t next() const { return static_cast<uint16_t>(depth + 1); }
};

}  // namespace hearth::schema

#endif
