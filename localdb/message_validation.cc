// The check of a message against its schema: file_names.cc knows which file the schema is in, the
// document services do the rest.
#include "base/address.h"
#include "base/status.h"
#include "hearth/json_data.h"
#include "hearth/local_db_ctrl.h"
#include "log/library_log.h"

int LocalDbCtrl::validateObject(TreeMapObject* obj, unsigned int apiT, unsigned int commT) {
  constexpr char kOperation[] = "validateObject";
  const char* const schemaFile = getSchemaFile(apiT, commT);
  if (schemaFile == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: failed to get schema file apiT=%d commT=%d\n", kOperation,
               static_cast<int>(apiT), static_cast<int>(commT));
    return hearth::kFailure;
  }
  if (obj == nullptr || obj->jobj == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: incorrect object obj=%s jobj=%s\n", kOperation,
               hearth::Address(obj).text(), hearth::Address(nullptr).text());
    return hearth::kFailure;
  }
  return JsonData::validateFile(obj, schemaFile);
}
