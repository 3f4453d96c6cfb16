// What a rule asks for, in words.
#ifndef HEARTH_SCHEMA_DESCRIBE_H
#define HEARTH_SCHEMA_DESCRIBE_H

#include <string>

#include "schema/effort.h"
#include "schema/keywords.h"

struct json_object;

namespace hearth {
namespace schema {

// Why the instance does not satisfy the keyword that has this value in this schema: the end of a
// sentence that begins with the instance.
// The effort is what finding the words may cost.
std::string describeFailure(json_object* instance, Id keyword, json_object* value,
                            json_object* schema, Draft draft, Effort& effort);

// The same for a member that is missing; the needer is the member because of which the keyword asks
// for it, or null.
std::string describeMissing(const char* name, Id keyword, const char* needer);

// The same for a keyword that bounds how many elements match "contains".
std::string describeCount(size_t count, Id keyword, json_object* value);

// The alternative that came closest, counted from 1: what is wrong where in the instance.
std::string describeClosest(size_t number, const std::string& where, const std::string& message);

// Why the validation ended early, with the keyword at fault.
std::string describeTrouble(Trouble trouble, Id keyword, json_object* value);

}  // namespace schema
}  // namespace hearth

#endif
