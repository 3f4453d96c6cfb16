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
std::string describeFailure(json_object* instance, Id keyword, json_object* value,
                            json_object* schema, Draft draft);

// The same for a keyword that bounds how many elements match "contains".
std::string describeCount(size_t count, Id keyword, json_object* value);

// Why the validation ended early, with the keyword at fault.
std::string describeTrouble(Trouble trouble, Id keyword, json_object* value);

}  // namespace schema
}  // namespace hearth

#endif
