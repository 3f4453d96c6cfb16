// Checks values and files against a JSON Schema.
//
// A schema that is missing, or a schema text that does not parse, lets everything pass with a
// warning; a schema file that exists and does not parse fails everything.
#include <sys/stat.h>

#include "base/address.h"
#include "base/json_ref.h"
#include "base/status.h"
#include "hearth/json_data.h"
#include "hearth/tree_map_object.h"
#include "json/handle/handle.h"
#include "json/json_file.h"
#include "log/library_log.h"
#include "schema/json_validate.h"

namespace hearth {
namespace {

// A null path leads to no file.
bool exists(const char* path) {
  struct stat found;
  return path != nullptr && stat(path, &found) == 0;
}

constexpr char kValidateObject[] = "validateObject";
constexpr char kValidateFile[] = "validateFile";

}  // namespace
}  // namespace hearth

int JsonData::validateObject(TreeMapObject* obj, const char* schemaText) {
  using hearth::kValidateObject;
  if (obj == nullptr || obj->jobj == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: bad pobj param obj=%s\n", kValidateObject,
               hearth::Address(obj).text());
    return hearth::kFailure;
  }
  if (obj->error != 0) {
    HEARTH_LOG(LOG_ERROR, "%s: bad pobj param error=%d jobj=%s\n", kValidateObject, obj->error,
               hearth::Address(obj->jobj).text());
    return hearth::kFailure;
  }
  const hearth::JsonRef schema(schemaText != nullptr ? json_tokener_parse(schemaText) : nullptr);
  if (schema == nullptr) {
    HEARTH_LOG(LOG_WARNING, "Invalid schema!\n");
    return hearth::kSuccess;
  }
  if (json_validate_instance(obj->jobj, schema.get()) == 0) {
    HEARTH_LOG(LOG_ERROR, "%s: failed to validate jobj\n", kValidateObject);
    return hearth::kFailure;
  }
  return hearth::kSuccess;
}

// The files are read by the validator, which also reports what is wrong with them.
int JsonData::validateFile(const char* instanceFile, const char* schemaFile) {
  using hearth::kValidateFile;
  if (!hearth::exists(schemaFile)) {
    HEARTH_LOG(LOG_WARNING, "%s: file is not exist\n%s. No validation is required\n", kValidateFile,
               hearth::printable(schemaFile));
    return hearth::kSuccess;
  }
  if (!hearth::exists(instanceFile)) {
    HEARTH_LOG(LOG_ERROR, "%s: file is not exist\n%s\n", kValidateFile,
               hearth::printable(instanceFile));
    return hearth::kFailure;
  }
  return json_validate_instance_from_file(instanceFile, schemaFile) != 0 ? hearth::kSuccess
                                                                         : hearth::kFailure;
}

int JsonData::validateFile(TreeMapObject* obj, const char* schemaFile) {
  using hearth::kValidateFile;
  if (obj == nullptr || obj->jobj == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: bad pobj param obj=%s\n", kValidateFile,
               hearth::Address(obj).text());
    return hearth::kFailure;
  }
  HEARTH_LOG(LOG_DEBUG, "%s: validate file %s\n", kValidateFile, hearth::printable(schemaFile));
  const hearth::JsonFile schema = hearth::findJsonFile(schemaFile);
  if (schema.reading == hearth::Reading::kMissing) {
    HEARTH_LOG(LOG_WARNING, "%s: file is not exist: %s. The validation is passed with notice\n",
               kValidateFile, hearth::printable(schemaFile));
    return hearth::kSuccess;
  }
  if (schema.value == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: failed to parse schema file %s\n", kValidateFile,
               hearth::printable(schemaFile));
    return hearth::kFailure;
  }
  return json_validate_instance(obj->jobj, schema.value.get()) != 0 ? hearth::kSuccess
                                                                    : hearth::kFailure;
}
