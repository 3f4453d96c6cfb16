// The members of an object in the order of the document. json-c 0.15 has no functions for this
// walk, and later releases ask that their functions be used in place of the fields.
#ifndef HEARTH_BASE_JSON_MEMBERS_H
#define HEARTH_BASE_JSON_MEMBERS_H

#include <json-c/json.h>

namespace hearth {

#if JSON_C_VERSION_NUM < (16 << 8)
inline lh_entry* firstMember(const lh_table* members) {
  return members->head;
}
inline lh_entry* memberAfter(const lh_entry* member) {
  return member->next;
}
#else
inline lh_entry* firstMember(const lh_table* members) {
  return lh_table_head(members);
}
inline lh_entry* memberAfter(const lh_entry* member) {
  return lh_entry_next(member);
}
#endif

}  // namespace hearth

#endif
