#include "localdb/holds.h"

#include <new>
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

bool isUnder(const Hold& hold, const char* sessionKey) {
  return sessionKey == nullptr ? !hold.hasKey : hold.hasKey && hold.key == sessionKey;
}

}  // namespace

bool noteLookup(const Lookup& found, unsigned int area, const char* sessionKey) {
  Hold& hold = found.use->holds[area];
  hold.area = area;
  hold.hasKey = sessionKey != nullptr;
  hold.isFallback = found.isFallback;
  hold.version = found.version;
  try {
    hold.key.assign(hold.hasKey ? sessionKey : "");
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

void keepHold(HandlerUse use, unsigned int area) {
  Hold& hold = use->holds[area];
  hold.older = newestHold;
  hold.use = std::move(use);
  newestHold = &hold;
}

Hold* findHold(const SessionHandler* handler, unsigned int area) {
  return findNewest(
      [=](const Hold& hold) { return hold.area == area && hold.use.get() == handler; });
}

Hold* findHoldUnder(const char* sessionKey, unsigned int area) {
  return findNewest(
      [=](const Hold& hold) { return hold.area == area && isUnder(hold, sessionKey); });
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
