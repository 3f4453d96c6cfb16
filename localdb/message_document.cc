// The constructor of a handle on a message's document. It stands here and not with the other
// constructors because it knows where the local database keeps its files.
#include <json-c/json.h>

#include "hearth/local_db_ctrl.h"
#include "hearth/tree_map_object.h"
#include "json/json_file.h"
#include "localdb/area.h"
#include "log/library_log.h"

// A message without a file, or with one that does not load, starts from an empty object; only a
// message that can have no file is an error.
TreeMapObject::TreeMapObject(unsigned int apiT, unsigned int commT)
    : jobj(nullptr), key_obj(), jobj_parent(nullptr), error(0) {
  const char* const name = LocalDbCtrl::getFileName(apiT, commT);
  const char* const shownName = name != nullptr ? name : hearth::kNoName;
  HEARTH_LOG(LOG_INFO, "TreeMapObject::TreeMapObject filename=%s\n", shownName);
  if (name == nullptr) {
    error = 1;
    HEARTH_LOG(LOG_DEBUG, "failed load object from %s\n", shownName);
    return;
  }
  jobj = hearth::readJsonFile(name);
  if (jobj == nullptr) {
    jobj = json_object_new_object();
  }
}
