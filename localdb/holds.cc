#include "localdb/holds.h"

#include <utility>

namespace hearth {
namespace {

thread_local Hold* newestHold = nullptr;

template <typename Matches>
Hold* findNewest(Matches matches) {
  Hold* hold = newestHold;
  while (hold != nullptr && !matches(*hold)) {
    hold = hold->older;
  }
  return hold;
}

}  // namespace

void keepHold(HandlerUse use, unsigned int area) {
  Hold& hold = use->holds[area];
  hold.area = area;
  hold.older = newestHold;
  hold.use = std::move(use);
  newestHold = &hold;
}

Hold* findHold(const LOCALDB_HANDLER* handler, unsigned int area) {
  return findNewest(
      [=](const Hold& hold) { return hold.area == area && hold.use->handler == handler; });
}

Hold* findHoldUnder(const char* sessionKey, unsigned int area) {
  return findNewest(
      [=](const Hold& hold) { return hold.area == area && hold.isUnder(sessionKey); });
}

HandlerUse endHold(Hold& hold) {
  Hold** link = &newestHold;
  while (*link != &hold) {
    link = &(*link)->older;
  }
  *link = hold.older;
  return std::move(hold.use);
}

}  // namespace hearth
