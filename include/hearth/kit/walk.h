// Members and elements in a range-for.
//
//   for (const auto& [name, value] : hearth::members(document, "security")) { ... }
//   for (const hearth::View network : hearth::elements(radio, "networks")) { ... }
//
// Members come in the order of the document. A value that is no object has no members, one that is
// no array no elements; so also nothing, and a path that leads nowhere. The member or element at
// hand may be removed inside the loop; anything else that changes the container ends its walk.
// Threads: one at a time per document.
// Cost: that of json-c's own loops; nothing is allocated.
#ifndef HEARTH_KIT_WALK_H
#define HEARTH_KIT_WALK_H

#include <json-c/json.h>

#include <cstddef>
#include <iterator>
#include <string_view>

#include "hearth/kit/handle.h"
#include "hearth/kit/read.h"
#include "hearth/kit/text.h"

namespace hearth {

// name is the document's, and ends in a NUL.
struct Member {
  std::string_view name;
  View value;
};

class Members {
 public:
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Member;
    using difference_type = std::ptrdiff_t;
    using pointer = const Member*;
    using reference = Member;

    explicit Iterator(lh_entry* entry) { moveTo(entry); }

    Member operator*() const {
      return {static_cast<const char*>(lh_entry_k(entry_)),
              View(static_cast<json_object*>(const_cast<void*>(lh_entry_v(entry_))))};
    }
    Iterator& operator++() {
      moveTo(next_);
      return *this;
    }
    bool operator==(const Iterator& other) const { return entry_ == other.entry_; }
    bool operator!=(const Iterator& other) const { return entry_ != other.entry_; }

   private:
    // The next one is looked up at once, so that this one may be removed.
    void moveTo(lh_entry* entry) {
      entry_ = entry;
      next_ = entry != nullptr ? entry->next : nullptr;
    }

    lh_entry* entry_ = nullptr;
    lh_entry* next_ = nullptr;
  };

  explicit Members(View object) : object_(object.isObject() ? object.raw() : nullptr) {}

  Iterator begin() const {
    return Iterator(object_ != nullptr ? json_object_get_object(object_)->head : nullptr);
  }
  Iterator end() const { return Iterator(nullptr); }
  std::size_t size() const {
    return object_ != nullptr ? static_cast<std::size_t>(json_object_object_length(object_)) : 0;
  }

 private:
  json_object* object_;
};

class Elements {
 public:
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = View;
    using difference_type = std::ptrdiff_t;
    using pointer = const View*;
    using reference = View;

    Iterator(json_object* array, std::size_t fromEnd) : array_(array), fromEnd_(fromEnd) {}

    View operator*() const { return View(json_object_array_get_idx(array_, length() - fromEnd_)); }
    Iterator& operator++() {
      --fromEnd_;
      return *this;
    }
    bool operator==(const Iterator& other) const { return fromEnd_ == other.fromEnd_; }
    bool operator!=(const Iterator& other) const { return fromEnd_ != other.fromEnd_; }

   private:
    std::size_t length() const { return json_object_array_length(array_); }

    json_object* array_;
    std::size_t fromEnd_;  // so that the element at hand may be removed
  };

  explicit Elements(View array) : array_(array.isArray() ? array.raw() : nullptr) {}

  Iterator begin() const { return Iterator(array_, size()); }
  Iterator end() const { return Iterator(array_, 0); }
  std::size_t size() const { return array_ != nullptr ? json_object_array_length(array_) : 0; }

  // The element; nothing for JSON null and past the end.
  View operator[](std::size_t index) const {
    return index < size() ? View(json_object_array_get_idx(array_, index)) : View();
  }

 private:
  json_object* array_;
};

// The members of an object, and of the object at path. The document must outlive the walk.
inline Members members(View object) {
  return Members(object);
}
inline Members members(View document, Name path) {
  return Members(find(document, path));
}

// The elements of an array, and of the array at path.
inline Elements elements(View array) {
  return Elements(array);
}
inline Elements elements(View document, Name path) {
  return Elements(find(document, path));
}

}  // namespace hearth

#endif
