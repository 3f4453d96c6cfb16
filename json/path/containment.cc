// Searches a value for the container in which it would be stored.
//
// The search goes breadth first along a list of the containers that it has met: it looks through
// one, appends the containers inside that are not on the list yet, and goes on to the next. So a
// value of any depth needs no stack, and one that is shared a million times is looked through once.
// The usual value is small; then the list fits into the object, and no memory is taken.
#include "json/path/containment.h"

#include <json-c/json.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

#include "json/depth.h"

namespace hearth {
namespace {

// Containers in the order in which they were added, each once. A hash table with linear probing
// finds a container's number in the list. The table has twice as many slots as the list has room,
// so probing always comes to an empty one.
class ContainerList {
 public:
  ContainerList() = default;
  ContainerList(const ContainerList&) = delete;
  ContainerList& operator=(const ContainerList&) = delete;

  std::size_t size() const { return size_; }
  json_object* operator[](std::size_t i) const { return list_[i]; }

  // Adds a container unless it is there. False when there is no memory for it.
  [[nodiscard]] bool add(json_object* container) {
    if (size_ == room_ && !grow()) {
      return false;
    }
    uint32_t& slot = slotOf(container);
    if (slot == 0) {
      list_[size_] = container;
      slot = static_cast<uint32_t>(++size_);
    }
    return true;
  }

 private:
  static constexpr std::size_t kUsualRoom = 16;

  // The slot that holds a container's number, counted from 1; or the slot, holding 0, in which its
  // number belongs.
  uint32_t& slotOf(json_object* container) {
    const std::size_t last = 2 * room_ - 1;
    // Addresses differ in their middle bits. The multiplication spreads those over the upper half.
    const uint64_t mixed = uint64_t{reinterpret_cast<uintptr_t>(container)} * 0x9e3779b97f4a7c15U;
    auto i = static_cast<std::size_t>(mixed >> 32) & last;
    while (slots_[i] != 0 && list_[slots_[i] - 1] != container) {
      i = (i + 1) & last;
    }
    return slots_[i];
  }

  // Doubles the room and enters every container into a new table. False, with nothing changed,
  // without memory.
  bool grow() {
    const std::size_t room = 2 * room_;
    std::unique_ptr<json_object*[]> list(new (std::nothrow) json_object*[room]);
    std::unique_ptr<uint32_t[]> slots(new (std::nothrow) uint32_t[2 * room]());
    if (list == nullptr || slots == nullptr) {
      return false;
    }
    std::copy_n(list_, size_, list.get());
    longList_ = std::move(list);
    longSlots_ = std::move(slots);
    list_ = longList_.get();
    slots_ = longSlots_.get();
    room_ = room;
    for (std::size_t i = 0; i < size_; ++i) {
      slotOf(list_[i]) = static_cast<uint32_t>(i + 1);
    }
    return true;
  }

  std::size_t size_ = 0;
  std::size_t room_ = kUsualRoom;
  json_object** list_ = usualList_;
  uint32_t* slots_ = usualSlots_;
  json_object* usualList_[kUsualRoom];
  uint32_t usualSlots_[2 * kUsualRoom] = {};
  std::unique_ptr<json_object*[]> longList_;  // in place of the usual ones when those are full
  std::unique_ptr<uint32_t[]> longSlots_;
};

std::size_t lengthOf(json_object* container) {
  return json_object_is_type(container, json_type_object) != 0
             ? static_cast<std::size_t>(json_object_object_length(container))
             : json_object_array_length(container);
}

// True when the test is true for a container that is a member or element. Asks about no more after
// the first.
template <typename Test>
bool anyContainerIn(json_object* container, Test test) {
  if (json_object_is_type(container, json_type_object) != 0) {
    json_object_object_foreach(container, name, member) {
      (void)name;
      if (isContainer(member) && test(member)) {
        return true;
      }
    }
    return false;
  }
  const std::size_t length = json_object_array_length(container);
  for (std::size_t i = 0; i < length; ++i) {
    json_object* const element = json_object_array_get_idx(container, i);
    if (isContainer(element) && test(element)) {
      return true;
    }
  }
  return false;
}

// One search through one value.
class DestinationSearch {
 public:
  explicit DestinationSearch(json_object* destination) : destination_(destination) {}

  // True when the destination is the container or inside it, or there is no memory to find out.
  bool in(json_object* container) {
    if (container == destination_ || isDirectlyIn(container)) {
      return true;
    }
    // The list grows while the loop goes along it.
    for (std::size_t i = 0; i < met_.size(); ++i) {
      if (isDirectlyIn(met_[i])) {
        return true;
      }
    }
    return false;
  }

 private:
  static constexpr std::size_t kFew = 8;

  // Looks at the members or elements of one container.
  bool isDirectlyIn(json_object* container) {
    return anyContainerIn(container, [this](json_object* inside) { return meet(inside); });
  }

  // Puts a container on the list. True when the search is over: this one is the destination, or
  // there is no memory for the list.
  bool meet(json_object* container) {
    return container == destination_ || (!isSmallLeaf(container) && !met_.add(container));
  }

  // True for a container of few values, all scalars: the usual one. Nothing can be found in it, so
  // it need not go on the list. Looking at it again, should it be shared, costs no more than
  // finding it on the list.
  static bool isSmallLeaf(json_object* container) {
    return lengthOf(container) <= kFew &&
           !anyContainerIn(container, [](json_object*) { return true; });
  }

  json_object* const destination_;
  ContainerList met_;
};

}  // namespace

bool wouldCloseCycle(json_object* container, json_object* destination, json_object* held) {
  return container != held && DestinationSearch(destination).in(container);
}

}  // namespace hearth
