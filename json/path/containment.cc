// A search for the place, container by container. It keeps a list of the containers that it has
// met and has to look into, each once, and goes along that list: what it finds inside the one at
// hand goes to the end.
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
// finds a container's number in the list; half of its slots at most are taken.
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

  // The slot of a container's number, counted from 1; 0 stands in the slot that it would get.
  uint32_t& slotOf(json_object* container) {
    const std::size_t last = 2 * room_ - 1;
    const uint64_t mixed = uint64_t{reinterpret_cast<uintptr_t>(container)} * 0x9e3779b97f4a7c15U;
    auto i = static_cast<std::size_t>(mixed >> 32) & last;
    while (slots_[i] != 0 && list_[slots_[i] - 1] != container) {
      i = (i + 1) & last;
    }
    return slots_[i];
  }

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

// True when the test is true for one of the containers that are members or elements.
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

class Search {
 public:
  explicit Search(json_object* place) : place_(place) {}

  // True when the place is in the container, or there is no memory to find out.
  bool in(json_object* container) {
    if (container == place_ || isJustIn(container)) {
      return true;
    }
    for (std::size_t i = 0; i < met_.size(); ++i) {
      if (isJustIn(met_[i])) {
        return true;
      }
    }
    return false;
  }

 private:
  static constexpr std::size_t kFew = 8;

  // Looks at the members or elements of one container.
  bool isJustIn(json_object* container) {
    return anyContainerIn(container, [this](json_object* inside) { return meet(inside); });
  }

  bool meet(json_object* container) {
    return container == place_ || (!isSmallLeaf(container) && !met_.add(container));
  }

  // Few values and all of them scalars: the usual container. To look at it again, should it be
  // shared, costs no more than to know that it was met.
  static bool isSmallLeaf(json_object* container) {
    return lengthOf(container) <= kFew &&
           !anyContainerIn(container, [](json_object*) { return true; });
  }

  json_object* const place_;
  ContainerList met_;
};

}  // namespace

bool wouldCloseCycle(json_object* container, json_object* place, json_object* held) {
  return container != held && Search(place).in(container);
}

}  // namespace hearth
