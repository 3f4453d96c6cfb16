#include "tools/store/resemblance.h"

#include <algorithm>

#include "hearth/kit/walk.h"
#include "tools/document/area.h"
#include "tools/document/input.h"
#include "tools/terminal/failure.h"

namespace hearth::tool {
namespace {

// The share of names that both have, in percent. 0 for a database that is missing or broken.
std::size_t likeness(json_object* document, unsigned int area) {
  try {
    const Handle database = readJson(databaseFile(area));
    std::size_t shared = 0;
    for (const Member& member : members(View(document))) {
      shared +=
          json_object_object_get_ex(database->jobj, member.name.data(), nullptr) != 0 ? 1U : 0U;
    }
    const std::size_t all =
        members(View(document)).size() + members(View(database->jobj)).size() - shared;
    return all == 0 ? 0 : shared * 100 / all;
  } catch (const Failure&) {
    return 0;
  }
}

}  // namespace

std::string otherAreaLike(json_object* document, unsigned int area) {
  constexpr std::size_t kHalf = 50;
  const std::size_t own = likeness(document, area);
  std::string best;
  std::size_t most = std::max(own + 1, kHalf);
  for (unsigned int other = 0; other < areaNames().size(); ++other) {
    const std::size_t its = other == area ? 0 : likeness(document, other);
    if (its >= most) {
      most = its + 1;
      best = API_DATA_DIR[other];
    }
  }
  return best;
}

}  // namespace hearth::tool
