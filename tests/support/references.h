// Who holds a value, as far as json-c tells.
#ifndef HEARTH_TESTS_SUPPORT_REFERENCES_H
#define HEARTH_TESTS_SUPPORT_REFERENCES_H

#include <json-c/json.h>

// Gives back a reference and answers whether it was the last: whether json-c's call for a value
// that goes came. What json_object_put answers is another thing in json-c 0.19 than before.
inline bool wasLastReference(json_object* value) {
  static bool isGone;
  isGone = false;
  json_object_set_userdata(value, nullptr, [](json_object*, void*) { isGone = true; });
  json_object_put(value);
  return isGone;
}

#endif
