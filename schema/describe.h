// Says in words why a validation failed or ended early.
#ifndef HEARTH_SCHEMA_DESCRIBE_H
#define HEARTH_SCHEMA_DESCRIBE_H

#include <string>

#include "schema/effort.h"
#include "schema/keywords/keywords.h"

struct json_object;

namespace hearth::schema {

// Why the instance does not satisfy the keyword that has this value in this schema: the end of a
// sentence that begins with the instance. Finding the words spends from the effort.
std::string describeFailure(json_object* instance, Id keyword, json_object* value,
                            json_object* schema, Draft draft, Effort& effort);

// The same for a member that is missing; the needer is the member because of which the keyword asks
// for it, or null.
std::string describeMissing(const char* name, Id keyword, const char* needer);

// The same for a keyword that bounds how many elements match "contains".
std::string describeCount(std::size_t count, Id keyword, json_object* value);

// The addition about the alternative that came closest, counted from 1: where in the instance it
// failed, and with which message.
std::string describeClosest(std::size_t number, const std::string& where,
                            const std::string& message);

// Why the validation ended early, with the keyword at fault.
std::string describeTrouble(Trouble trouble, Id keyword, json_object* value);

}  // namespace hearth::schema

#endif
