#include "json/deep_release.h"

#include <json-c/json.h>

#include <utility>

#include "json/json_ref.h"
#include "json/nesting.h"

namespace hearth {
namespace {

constexpr std::size_t kFirstMarked = 64;

// The children waiting for their release on this thread: an array, made by the outermost marked
// container that dies and null otherwise.
thread_local json_object* waiting = nullptr;

// Takes over the reference that a container's dying parent held. Without memory for the queue it is
// given back at once, and the containers below are released by recursion.
void queue(JsonRef child) {
  if (json_object_array_add(waiting, child.get()) == 0) {
    static_cast<void>(child.release());
  }
}

void queueMembers(json_object* dying) {
  json_object_object_foreach(dying, name, member) {
    if (isContainer(member)) {
      JsonRef child(json_object_get(member));
      json_object_object_del(dying, name);
      queue(std::move(child));
    }
  }
}

void queueElements(json_object* dying) {
  const size_t length = json_object_array_length(dying);
  for (size_t i = 0; i < length; ++i) {
    json_object* const element = json_object_array_get_idx(dying, i);
    if (isContainer(element)) {
      JsonRef child(json_object_get(element));
      json_object_array_put_idx(dying, i, nullptr);
      queue(std::move(child));
    }
  }
}

// Called by json-c when a marked container's last reference is gone, before it releases what is
// inside.
void queueChildren(json_object* dying, void* /*userdata*/) {
  const JsonRef outermost(waiting == nullptr ? json_object_new_array() : nullptr);
  if (outermost != nullptr) {
    waiting = outermost.get();
  } else if (waiting == nullptr) {
    return;
  }
  if (json_object_is_type(dying, json_type_object) != 0) {
    queueMembers(dying);
  } else {
    queueElements(dying);
  }
  if (outermost == nullptr) {
    return;
  }
  for (size_t length = 0; (length = json_object_array_length(waiting)) > 0;) {
    const JsonRef next(json_object_get(json_object_array_get_idx(waiting, length - 1)));
    json_object_array_del_idx(waiting, length - 1, 1);
  }
  waiting = nullptr;
}

}  // namespace

json_object* newContainer(json_object* made, std::size_t position) {
  if (made != nullptr && position >= kFirstMarked) {
    json_object_set_userdata(made, nullptr, &queueChildren);
  }
  return made;
}

}  // namespace hearth
