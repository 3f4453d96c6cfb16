// Members of an object, looked for by name.
#ifndef HEARTH_SCHEMA_KEYWORDS_MEMBERS_H
#define HEARTH_SCHEMA_KEYWORDS_MEMBERS_H

#include <json-c/json.h>

#include <cstddef>
#include <cstring>

#include "schema/effort.h"

namespace hearth {
namespace schema {

// What looking for a name costs in steps beyond the first: a name may be as long as the document.
inline size_t costOfName(const char* name) {
  return strlen(name) / 64;
}

// Finds members faster when they are asked for in the order in which they stand.
class OrderedLookup {
 public:
  // Of a null object no member is found.
  OrderedLookup(json_object* object, Effort& effort)
      : table_(object ? json_object_get_object(object) : nullptr),
        guess_(table_ ? lh_table_head(table_) : nullptr),
        effort_(effort) {}

  // Null too when the effort is stopped.
  lh_entry* find(const char* name) {
    lh_entry* found = guess_;
    if (found ? !isNamed(found, name) : table_ != nullptr) {
      found = effort_.spend(costOfName(name)) ? lh_table_lookup_entry(table_, name) : nullptr;
    }
    if (found) {
      guess_ = lh_entry_next(found);
    }
    return found;
  }

 private:
  // Names are short: a loop beats a call, and knows their length at its end.
  bool isNamed(lh_entry* entry, const char* name) {
    const char* own = static_cast<const char*>(lh_entry_k(entry));
    const char* const start = own;
    for (; *own == *name; ++own, ++name) {
      if (!*own) {
        const auto length = static_cast<size_t>(own - start);
        return length < 64 || effort_.spend(length / 64);
      }
    }
    return false;
  }

  lh_table* table_;
  lh_entry* guess_;
  Effort& effort_;
};

}  // namespace schema
}  // namespace hearth

#endif
