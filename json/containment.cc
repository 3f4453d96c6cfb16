#include "json/containment.h"

#include <json-c/json.h>

namespace hearth {
namespace {

// A value may be shared between places, and shared values inside shared values multiply what a walk
// visits; no document of a gateway has as many containers as this.
constexpr int kMostVisits = 1 << 20;

class Search {
 public:
  explicit Search(json_object* sought) : sought_(sought) {}

  // True when found, and when the search has gone too deep or too far.
  bool in(json_object* container, int levels) {
    if (container == sought_ || levels == 0 || --visitsLeft_ < 0) {
      return true;
    }
    return json_object_is_type(container, json_type_object) != 0
               ? inMembers(container, levels - 1)
               : inElements(container, levels - 1);
  }

 private:
  bool inMembers(json_object* object, int levels) {
    json_object_object_foreach(object, name, member) {
      (void)name;
      if (isContainer(member) && in(member, levels)) {
        return true;
      }
    }
    return false;
  }

  bool inElements(json_object* array, int levels) {
    const size_t length = json_object_array_length(array);
    for (size_t i = 0; i < length; ++i) {
      json_object* const element = json_object_array_get_idx(array, i);
      if (isContainer(element) && in(element, levels)) {
        return true;
      }
    }
    return false;
  }

  json_object* const sought_;
  int visitsLeft_ = kMostVisits;
};

}  // namespace

bool containerMayContain(json_object* container, json_object* sought) {
  return Search(sought).in(container, kWalkNesting);
}

}  // namespace hearth
