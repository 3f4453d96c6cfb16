// Nothing on the way sets errno but an allocation that fails, and nothing sets it back.
#include "json/render.h"

#include <cerrno>

#include "json/depth.h"

namespace hearth {

const char* render(json_object* value, int flags, std::size_t& size) {
  errno = 0;
  const char* const text = json_object_to_json_string_length(value, flags, &size);
  return errno == ENOMEM ? nullptr : text;
}

const char* render(json_object* value, int flags) {
  std::size_t size = 0;
  return render(value, flags, size);
}

const char* renderShallow(json_object* value, int flags) {
  return isNestedDeeperThan(value, kWalkNesting) ? nullptr : render(value, flags);
}

}  // namespace hearth
