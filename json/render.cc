// json-c does not say that it ran out of memory: it leaves out what it could not append. But only a
// failed allocation sets errno while it renders, and nothing sets it back. So errno, cleared
// before, tells a whole text from one with holes.
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
