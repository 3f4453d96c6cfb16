// Members of an object, looked up by name.
#ifndef HEARTH_SCHEMA_KEYWORDS_MEMBERS_H
#define HEARTH_SCHEMA_KEYWORDS_MEMBERS_H

#include <json-c/json.h>

#include <cstddef>
#include <cstring>

#include "base/json_members.h"
#include "schema/effort.h"

namespace hearth::schema {

inline const char* nameOfMember(lh_entry* entry) {
  return static_cast<const char*>(lh_entry_k(entry));
}
inline json_object* valueOfMember(lh_entry* entry) {
  return static_cast<json_object*>(lh_entry_v(entry));
}

// The steps that a look-up by this name costs beyond its first. Names are hashed and compared
// whole, and one may be as long as the document.
inline std::size_t costOfName(const char* name) {
  return strlen(name) / 64;
}

// Looks members up in the order in which they are likely to stand: instances mostly have their
// members in the order of the schema's "properties". The one behind the last hit is tried first,
// and the object's hash table is asked only when that guess fails.
class OrderedLookup {
 public:
  // A null object has no members.
  OrderedLookup(json_object* object, Effort& effort)
      : table_(object != nullptr ? json_object_get_object(object) : nullptr),
        guess_(table_ != nullptr ? firstMember(table_) : nullptr),
        effort_(effort) {}

  // Null when there is no such member, and when the effort is stopped.
  lh_entry* find(const char* name) {
    lh_entry* found = guess_;
    if (found != nullptr ? !isNamed(found, name) : table_ != nullptr) {
      found = effort_.spend(costOfName(name)) ? lh_table_lookup_entry(table_, name) : nullptr;
    }
    if (found != nullptr) {
      guess_ = memberAfter(found);
    }
    return found;
  }

 private:
  // Names are short: a loop beats a call, and knows their length at its end.
  bool isNamed(lh_entry* entry, const char* name) {
    const char* own = nameOfMember(entry);
    const char* const start = own;
    for (; *own == *name; ++own, ++name) {
      if (!*own) {
        const auto length = static_cast<std::size_t>(own - start);
        return length < 64 || effort_.spend(length / 64);
      }
    }
    return false;
  }

  lh_table* table_;
  lh_entry* guess_;
  Effort& effort_;
};

}  // namespace hearth::schema

#endif
