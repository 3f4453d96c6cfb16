// Searches a document for a value, depth first. The pointer grows with each step down and is cut
// back when the step led nowhere, so the whole search needs one string.
#include "schema/resource/pointer.h"

#include <json-c/json.h>

#include "schema/text.h"

namespace hearth::schema {
namespace {

// Deeper rules are told without their place: the search must not take more stack than the walk
// left.
constexpr unsigned kDeepestLocated = 64;

bool locateWithin(json_object* top, json_object* wanted, unsigned depth, Effort& effort,
                  std::string& pointer) {
  const std::size_t size = pointer.size();
  // Goes one step down. Only containers can have the value behind them.
  const auto isBehind = [&](const char* step, json_object* value) {
    const json_type type = json_object_get_type(value);
    if (value != wanted && type != json_type_object && type != json_type_array) {
      return false;
    }
    addToPointer(step, pointer);
    if (value == wanted || locateWithin(value, wanted, depth + 1, effort, pointer)) {
      return true;
    }
    pointer.resize(size);
    return false;
  };
  if (depth == kDeepestLocated) {
    return false;
  }
  if (json_object_get_type(top) == json_type_object) {
    json_object_object_foreach(top, name, value) {
      if (!effort.spend(1) || isBehind(name, value)) {
        return !effort.isStopped();
      }
    }
  } else if (json_object_get_type(top) == json_type_array) {
    for (std::size_t i = 0; i < json_object_array_length(top) && effort.spend(1); ++i) {
      if (isBehind(decimal(i).c_str(), json_object_array_get_idx(top, i))) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace

bool locate(json_object* top, json_object* wanted, Effort& effort, std::string& pointer) {
  return top == wanted || locateWithin(top, wanted, 0, effort, pointer);
}

// A '~' becomes "~0" and a '/' "~1".
void addToPointer(const char* step, std::string& pointer) {
  pointer += '/';
  for (; *step; ++step) {
    if (*step == '~' || *step == '/') {
      pointer += *step == '~' ? "~0" : "~1";
    } else {
      pointer += *step;
    }
  }
}

}  // namespace hearth::schema
