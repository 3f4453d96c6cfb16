// The operations on whole documents: reading them from text and file, writing them to text and
// file, copying them and dumping them into the log.
//
// A missing file gives no handle at all. A file that is there but cannot be read or parsed gives a
// handle without a value: callers tell the two apart.
#include "base/address.h"
#include "base/status.h"
#include "files/replace_file.h"
#include "hearth/json_data.h"
#include "hearth/tree_map_object.h"
#include "json/document/deep_copy.h"
#include "json/handle/handle.h"
#include "json/json_file.h"
#include "json/path/lookup.h"
#include "json/render.h"
#include "log/library_log.h"

namespace hearth {
namespace {

// The result that the failure line of a save shows.
constexpr int kWriterFailed = -1;

}  // namespace
}  // namespace hearth

TreeMapObject* JsonData::createObject(const char* text) {
  json_object* const value = text != nullptr ? json_tokener_parse(text) : nullptr;
  return value != nullptr ? hearth::newOwningHandle(value) : nullptr;
}

TreeMapObject* JsonData::createObjectFromFile(const char* path) {
  hearth::JsonFile file = hearth::findJsonFile(path);
  return file.reading != hearth::Reading::kMissing ? hearth::newOwningHandle(file.value.release())
                                                   : nullptr;
}

const char* JsonData::getJson(TreeMapObject* obj) {
  if (obj == nullptr || obj->error != 0 || obj->jobj == nullptr) {
    return nullptr;
  }
  return hearth::renderShallow(obj->jobj, JSON_C_TO_STRING_SPACED | JSON_C_TO_STRING_PRETTY);
}

json_object* JsonData::cloneObject(json_object* jobj) {
  constexpr char kOperation[] = "cloneObject";
  if (jobj == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: bad pobj param jobj=%s\n", kOperation, hearth::Address(jobj).text());
    return nullptr;
  }
  HEARTH_LOG(LOG_DEBUG, "%s: clone json object %s\n", kOperation, hearth::Address(jobj).text());
  hearth::DeepCopy copy = hearth::deepCopy(jobj);
  if (copy.hasText) {
    HEARTH_LOG(LOG_DEBUG, "%s: parser json to create new object\n", kOperation);
  } else {
    HEARTH_LOG(LOG_ERROR, "%s: fail to get json string\n", kOperation);
  }
  if (copy.value == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to create new object\n", kOperation);
  }
  return copy.value.release();
}

int JsonData::saveObjectToFile(const char* path, TreeMapObject* obj) {
  constexpr char kOperation[] = "saveObjectToFile";
  HEARTH_LOG(LOG_DEBUG, "%s: save obj=%s\n", kOperation, hearth::Address(obj).text());
  if (path == nullptr || obj == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: wrong params path=%s obj=%s\n", kOperation, hearth::printable(path),
               hearth::Address(obj).text());
    return hearth::kFailure;
  }
  if (!hearth::replaceFileWithJson(path, obj->jobj, hearth::Durability::kFlushed)) {
    HEARTH_LOG(LOG_DEBUG, "%s: failed to save object to file (%s) ret=%d\n", kOperation, path,
               hearth::kWriterFailed);
    return hearth::kFailure;
  }
  HEARTH_LOG(LOG_DEBUG, "%s: object is saved\n", kOperation);
  return hearth::kSuccess;
}

void JsonData::dumpObject(TreeMapObject* obj, const char* path) {
  constexpr char kOperation[] = "dumpObject";
  if (obj == nullptr || obj->jobj == nullptr || path == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: wrong params obj=%s\n", kOperation, hearth::Address(obj).text());
    return;
  }
  json_object* const value = path[0] == '\0' ? obj->jobj : getJObj(obj->jobj, path);
  if (value == nullptr) {
    return;
  }
  HEARTH_LOG(LOG_INFO, "%s: %s\ntype=%d\n%s\n", kOperation, path,
             static_cast<int>(json_object_get_type(value)),
             hearth::printable(hearth::renderShallow(value, JSON_C_TO_STRING_PRETTY)));
}

TreeMapObject* TreeMapObject::clone(const char* path) const {
  constexpr char kOperation[] = "clone";
  json_object* const value = path == nullptr ? jobj : JsonData::getJObj(jobj, path);
  if (value == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to get object by path\n", kOperation);
    return nullptr;
  }
  json_object* const copy = JsonData::cloneObject(value);
  if (copy == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: fail to clone object\n", kOperation);
    return nullptr;
  }
  return hearth::newOwningHandle(copy);
}

void TreeMapObject::dump(const char* path) {
  HEARTH_LOG(LOG_INFO, "Dump object content:\n");
  JsonData::dumpObject(this, path);
}
