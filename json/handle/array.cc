// The operations on a handle's value as an array.
//
// Removing elements makes a new array and puts it where the old one was: into the handle and, for a
// borrowed handle, into the container. So a removal that runs out of memory changes nothing. Other
// handles on the old array go stale: they find that their container no longer has it, and refuse.
#include <cstdio>
#include <limits>
#include <utility>

#include "base/json_ref.h"
#include "hearth/tree_map_object.h"
#include "json/depth.h"
#include "json/handle/handle.h"
#include "json/handle/relink.h"
#include "json/path/containment.h"
#include "log/library_log.h"

namespace hearth {
namespace {

// The index as a path's token, which is what key_obj holds for an element.
struct IndexKey {
  explicit IndexKey(int index) { std::snprintf(text, sizeof(text), "[%d]", index); }
  char text[16];
};

// Replaces the element at an index below the length, or appends. Answers the index at which the
// item's value then stands and writes it into the item's key; -1 when nothing was stored.
int putItem(json_object* array, int length, unsigned int index, TreeMapObject* item) {
  const bool replaces = index < static_cast<unsigned int>(length);
  const int position = replaces ? static_cast<int>(index) : length;
  const auto neighbour = static_cast<std::size_t>(replaces ? position : length - 1);
  if (isContainer(item->jobj) &&
      wouldCloseCycle(item->jobj, array, json_object_array_get_idx(array, neighbour))) {
    return -1;
  }
  // The array's own reference, taken first: the element that is replaced may be the same value.
  JsonRef reference(json_object_get(item->jobj));
  const int failed =
      replaces ? json_object_array_put_idx(array, static_cast<std::size_t>(position), item->jobj)
               : json_object_array_add(array, item->jobj);
  if (failed != 0) {
    return -1;
  }
  static_cast<void>(reference.release());
  std::snprintf(item->key_obj, sizeof(item->key_obj), "%s", IndexKey(position).text);
  return position;
}

// Appends the elements of `from` but the one at `left`, each with a reference of its own.
[[nodiscard]] bool appendAllBut(json_object* from, std::size_t left, json_object* to) {
  const std::size_t length = json_object_array_length(from);
  for (std::size_t i = 0; i < length; ++i) {
    if (i == left) {
      continue;
    }
    JsonRef element(json_object_get(json_object_array_get_idx(from, i)));
    if (json_object_array_add(to, element.get()) != 0) {
      return false;
    }
    static_cast<void>(element.release());
  }
  return true;
}

// True for a handle whose array is no longer in its container. The array may be freed, so only the
// container is read.
bool isStale(const TreeMapObject& handle) {
  return handle.jobj_parent != nullptr &&
         !contains(handle.jobj_parent, handle.key_obj, handle.jobj);
}

// Puts a new array in place of the handle's old one, which is released. False, with nothing
// changed, when the container does not take it.
[[nodiscard]] bool replaceArray(TreeMapObject& handle, JsonRef made) {
  if (handle.jobj_parent == nullptr) {
    json_object_put(handle.jobj);
  } else if (!relink(handle.jobj_parent, handle.key_obj, handle.jobj, made.get())) {
    return false;
  }
  handle.jobj = made.release();
  return true;
}

}  // namespace
}  // namespace hearth

int TreeMapObject::len() const {
  if (json_object_is_type(jobj, json_type_array) == 0) {
    return -1;
  }
  return static_cast<int>(json_object_array_length(jobj));
}

TreeMapObject* TreeMapObject::at(unsigned int index) const {
  const int length = len();
  if (length < 0 || index >= static_cast<unsigned int>(length)) {
    return nullptr;
  }
  return hearth::newBorrowedHandle(json_object_array_get_idx(jobj, index), jobj,
                                   hearth::IndexKey(static_cast<int>(index)).text);
}

int TreeMapObject::setArrayItem(unsigned int index, TreeMapObject* item) {
  const int length = item != nullptr && item->jobj != nullptr ? len() : -1;
  return length >= 0 ? hearth::putItem(jobj, length, index, item) : -1;
}

// No array is that long, so the item is appended.
int TreeMapObject::addArrayItem(TreeMapObject* item) {
  return setArrayItem(std::numeric_limits<unsigned int>::max(), item);
}

int TreeMapObject::delArrayItem(unsigned int index) {
  const int length = hearth::isStale(*this) ? -1 : len();
  if (length < 0 || index >= static_cast<unsigned int>(length)) {
    return -1;
  }
  hearth::JsonRef rest(json_object_new_array());
  if (rest == nullptr || !hearth::appendAllBut(jobj, index, rest.get())) {
    HEARTH_LOG(LOG_ERROR, "Cannot create a backup array due to memory error");
    return -1;
  }
  return hearth::replaceArray(*this, std::move(rest)) ? length - 1 : -1;
}

int TreeMapObject::clearArrayItems() {
  if (hearth::isStale(*this) || len() < 0) {
    return -1;
  }
  hearth::JsonRef empty(json_object_new_array());
  if (empty == nullptr) {
    HEARTH_LOG(LOG_ERROR, "%s: failed to create new array object!\n", "clearArrayItems");
    return -1;
  }
  return hearth::replaceArray(*this, std::move(empty)) ? 0 : -1;
}
