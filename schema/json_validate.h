// The seam between the document services and a JSON Schema validator: two functions with C linkage,
// so that a platform's own validator can be linked in place of the one in this folder.
#ifndef HEARTH_SCHEMA_JSON_VALIDATE_H
#define HEARTH_SCHEMA_JSON_VALIDATE_H

#include <json-c/json.h>

extern "C" {

// Not zero when the instance conforms to the schema, else 0. Neither value is changed, kept or
// released.
int json_validate_instance(json_object* instance, json_object* schema);

// Like json_validate_instance, on two files; 0 also when either cannot be read or parsed.
int json_validate_instance_from_file(const char* instanceFile, const char* schemaFile);
}

#endif
