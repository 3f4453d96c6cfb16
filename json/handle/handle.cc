// The life of a handle, and the operations that take or return handles by path.
//
// A handle owns one reference on its value, or borrows the value from the container that
// `jobj_parent` names; only an owning handle releases anything. The library makes an owning handle
// for a whole document or what a search finds, and a borrowed one for a value at a path.
#include "json/handle/handle.h"

#include <cstring>
#include <new>

#include "base/address.h"
#include "hearth/json_data.h"
#include "hearth/tree_map_object.h"
#include "json/path/index.h"
#include "json/path/lookup.h"
#include "json/path/store.h"
#include "log/library_log.h"

TreeMapObject::TreeMapObject() : TreeMapObject(static_cast<json_object*>(nullptr)) {}

TreeMapObject::TreeMapObject(bool isArray)
    : TreeMapObject(isArray ? json_object_new_array() : json_object_new_object()) {}

TreeMapObject::TreeMapObject(const char* text)
    : TreeMapObject(text != nullptr ? json_tokener_parse(text) : nullptr) {}

TreeMapObject::TreeMapObject(json_object* adopted)
    : jobj(adopted), key_obj(), jobj_parent(nullptr), error(0) {}

TreeMapObject::~TreeMapObject() {
  HEARTH_LOG(LOG_DEBUG, "%s: this=%s\n", "~TreeMapObject", hearth::Address(this).text());
  // A value with a container belongs to that container.
  if (jobj != nullptr && jobj_parent == nullptr) {
    HEARTH_LOG(LOG_DEBUG, "     release jobj=%s\n", hearth::Address(jobj).text());
    json_object_put(jobj);
  } else {
    HEARTH_LOG(LOG_DEBUG, "     ignore jobj=%s jobj_parent=%s key_obj=%s\n",
               hearth::Address(jobj).text(), hearth::Address(jobj_parent).text(), key_obj);
  }
}

void TreeMapObject::set(const char* path, TreeMapObject* obj) {
  HEARTH_LOG(LOG_DEBUG, "TreeMapObject::set: %s %s\n", hearth::printable(path),
             hearth::Address(obj).text());
  if (obj == nullptr) {
    HEARTH_LOG(LOG_ERROR, "TreeMapObject::set: obj=null\n");
    return;
  }
  if (!hearth::PathStore(jobj, path, obj->jobj).store()) {
    HEARTH_LOG(LOG_ERROR, "TreeMapObject::set: fail to set object value to %s\n",
               hearth::printable(path));
  }
}

TreeMapObject* TreeMapObject::get(const char* path) const {
  using hearth::PathLookup;
  const PathLookup lookup(jobj, path);
  if (lookup.value() == nullptr) {
    return nullptr;
  }
  // The root has no container to borrow from, so the new handle shares the document.
  if (lookup.outcome() == PathLookup::Outcome::kRoot) {
    return hearth::newOwningHandle(json_object_get(jobj));
  }
  return hearth::newBorrowedHandle(lookup.value(), lookup.parent(), lookup.lastToken());
}

void TreeMapObject::del(const char* path) {
  const hearth::PathLookup lookup(jobj, path);
  if (lookup.value() == nullptr || lookup.parent() == nullptr) {
    return;
  }
  const char* const token = lookup.lastToken();
  if (json_object_is_type(lookup.parent(), json_type_object) != 0) {
    json_object_object_del(lookup.parent(), token);
    return;
  }
  // Reading takes an index without digits for 0. Removing must not: "[x]" names no element, and
  // the first one would be lost.
  const std::size_t length = std::strlen(token);
  if (!hearth::hasDigits(token, length)) {
    hearth::logWrongIndex(token, length);
    return;
  }
  json_object_array_del_idx(lookup.parent(), lookup.index(), 1);
}

namespace hearth {

TreeMapObject* newOwningHandle(json_object* adopted) {
  auto* const handle = new (std::nothrow) TreeMapObject(adopted);
  if (handle == nullptr) {
    json_object_put(adopted);
  }
  return handle;
}

TreeMapObject* newBorrowedHandle(json_object* value, json_object* container, const char* key) {
  auto* const handle = new (std::nothrow) TreeMapObject(value);
  if (handle != nullptr) {
    handle->jobj_parent = container;
    // A long key is cut. The rest of key_obj is NULs from the constructor.
    std::memcpy(handle->key_obj, key, strnlen(key, sizeof(handle->key_obj) - 1));
  }
  return handle;
}

}  // namespace hearth
