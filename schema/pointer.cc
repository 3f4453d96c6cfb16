// JSON pointers, written.
#include "schema/pointer.h"

#include <json-c/json.h>

#include "schema/text.h"

namespace hearth {
namespace schema {

void addToPointer(std::string* pointer, const char* token) {
  *pointer += '/';
  for (; *token; ++token) {
    if (*token == '~' || *token == '/') {
      *pointer += *token == '~' ? "~0" : "~1";
    } else {
      *pointer += *token;
    }
  }
}

namespace {

constexpr unsigned kDeepestLocated = 64;

bool locateWithin(json_object* top, json_object* wanted, unsigned depth, Effort& effort,
                  std::string* pointer) {
  const size_t size = pointer->size();
  const auto step = [&](const char* token, json_object* value) {
    if (value != wanted && json_object_get_type(value) != json_type_object &&
        json_object_get_type(value) != json_type_array) {
      return false;
    }
    addToPointer(pointer, token);
    if (value == wanted || locateWithin(value, wanted, depth + 1, effort, pointer)) {
      return true;
    }
    pointer->resize(size);
    return false;
  };
  if (depth == kDeepestLocated) {
    return false;
  }
  if (json_object_get_type(top) == json_type_object) {
    json_object_object_foreach(top, name, value) {
      if (!effort.spend(1) || step(name, value)) {
        return !effort.stopped();
      }
    }
  } else if (json_object_get_type(top) == json_type_array) {
    for (size_t i = 0; i < json_object_array_length(top) && effort.spend(1); ++i) {
      if (step(decimal(i).c_str(), json_object_array_get_idx(top, i))) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace

bool locate(json_object* top, json_object* wanted, Effort& effort, std::string* pointer) {
  return top == wanted || locateWithin(top, wanted, 0, effort, pointer);
}

}  // namespace schema
}  // namespace hearth
