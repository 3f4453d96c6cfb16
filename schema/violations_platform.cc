// The public operation over a platform's validator, which answers yes or no: a no is told as one
// violation of the whole instance. Only a schema that is neither object nor boolean is known to be
// unusable.
#include "hearth/violations.h"
#include "schema/json_validate.h"

namespace hearth {

Conformance findViolations(json_object* instance, json_object* schema, unsigned int limit,
                           ViolationFound found, void* context) noexcept {
  const json_type type = json_object_get_type(schema);
  const bool isSchema = type == json_type_object || type == json_type_boolean;
  if (isSchema && json_validate_instance(instance, schema) != 0) {
    return Conformance::kConforms;
  }
  if (found != nullptr && limit > 0) {
    found(context, {sizeof(Violation), "", "", "", "",
                    isSchema ? "breaks a rule of the schema"
                             : "cannot be checked: the schema is neither object nor boolean"});
  }
  return isSchema ? Conformance::kViolates : Conformance::kUnusable;
}

}  // namespace hearth
