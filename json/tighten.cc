// json-c gives every object a table with room for ten members, sixteen entries of five words, and
// doubles a table that is full. Most objects of a document have fewer members than that.
#include "json/tighten.h"

#include <cstddef>

#include "base/json_members.h"

namespace hearth {
namespace {

// Takes the smallest table that holds one member more before json-c makes it grow. A smaller one
// would grow while json-c fills it, and json-c would then note a wrong size for it.
void tightenTable(lh_table* members) {
  const int entries = static_cast<int>(lh_table_length(members) / LH_LOAD_FACTOR) + 1;
  if (entries < members->size) {
    lh_table_resize(members, entries);
  }
}

void tightenObject(json_object* object) {
  lh_table* const members = json_object_get_object(object);
  tightenTable(members);
  for (lh_entry* member = firstMember(members); member != nullptr; member = memberAfter(member)) {
    tighten(static_cast<json_object*>(lh_entry_v(member)));
  }
}

void tightenElements(json_object* array) {
  const std::size_t length = json_object_array_length(array);
  for (std::size_t i = 0; i < length; ++i) {
    tighten(json_object_array_get_idx(array, i));
  }
}

}  // namespace

void tighten(json_object* value) {
  switch (json_object_get_type(value)) {
    case json_type_object:
      return tightenObject(value);
    case json_type_array:
      return tightenElements(value);
    default:
      return;
  }
}

}  // namespace hearth
