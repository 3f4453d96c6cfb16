// Each thread's list of the slots that it holds.
//
// A hold lies in its handler, so entering it needs no memory and cannot fail; what may fail, the
// copy of the key, is done before the slot is locked. A thread holds few slots at a time, and looks
// for the newest: the list is short and is walked from its head.
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

// A null key is a key of its own here, different from "".
bool isUnder(const Hold& hold, const char* sessionKey) {
  return sessionKey == nullptr ? !hold.hasKey : hold.hasKey && hold.key == sessionKey;
}

}  // namespace

bool noteKey(Hold& hold, const char* sessionKey) {
  hold.hasKey = sessionKey != nullptr;
  try {
    hold.key.assign(hold.hasKey ? sessionKey : "");
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

void keepHold(Lookup found, unsigned int area) {
  Hold& hold = found.handler->holds[area];
  hold.older = newestHold;
  hold.area = area;
  hold.found = std::move(found);
  newestHold = &hold;
}

Hold* findHold(const SessionHandler* handler, unsigned int area) {
  return findNewest(
      [=](const Hold& hold) { return hold.area == area && hold.found.handler.get() == handler; });
}

Hold* findHoldUnder(const char* sessionKey, unsigned int area) {
  return findNewest(
      [=](const Hold& hold) { return hold.area == area && isUnder(hold, sessionKey); });
}

// The hold's memory goes with its handler, so the caller gets the reference that keeps both alive.
HandlerRef endHold(Hold& hold) {
  Hold** link = &newestHold;
  while (*link != &hold) {
    link = &(*link)->older;
  }
  *link = hold.older;
  return std::move(hold.found.handler);
}

}  // namespace hearth
