// Owners, and what reads and writes go through.
//
//   Handle  owns a TreeMapObject, which the contract's operations give to be deleted
//   Value   owns one reference of a json-c value
//   View    a borrowed value to read; every owner, and every lock, converts to it
//   Edit    a borrowed value to read and change; every owner converts to it, a mere lock does not
//
// Threads: as for TreeMapObject, one at a time per document.
#ifndef HEARTH_KIT_HANDLE_H
#define HEARTH_KIT_HANDLE_H

#include <json-c/json.h>

#include <cstddef>
#include <memory>
#include <utility>

#include "hearth/tree_map_object.h"

namespace hearth {

// A borrowed value, or nothing: JSON null, a null handle and an owner that was moved from are
// nothing. Valid as long as what it was made from. Copying it copies a pointer.
class View {
 public:
  View() = default;
  View(std::nullptr_t) {}                               // NOLINT(google-explicit-constructor)
  View(json_object* value) : value_(value) {}           // NOLINT(google-explicit-constructor)
  View(const TreeMapObject& handle) : View(&handle) {}  // NOLINT(google-explicit-constructor)
  View(const TreeMapObject* handle)                     // NOLINT(google-explicit-constructor)
      : value_(handle != nullptr ? handle->jobj : nullptr) {}

  explicit operator bool() const { return value_ != nullptr; }

  // The value itself, still borrowed; null for nothing.
  json_object* raw() const { return value_; }

  // json_type_null for nothing.
  json_type type() const { return json_object_get_type(value_); }
  bool isObject() const { return type() == json_type_object; }
  bool isArray() const { return type() == json_type_array; }

 private:
  json_object* value_ = nullptr;
};

// A borrowed value that may be changed.
class Edit {
 public:
  Edit(std::nullptr_t) {}                               // NOLINT(google-explicit-constructor)
  Edit(json_object* value) : value_(value) {}           // NOLINT(google-explicit-constructor)
  Edit(const TreeMapObject& handle) : Edit(&handle) {}  // NOLINT(google-explicit-constructor)
  Edit(const TreeMapObject* handle)                     // NOLINT(google-explicit-constructor)
      : value_(handle != nullptr ? handle->jobj : nullptr) {}

  json_object* raw() const { return value_; }

 private:
  json_object* value_ = nullptr;
};

// Owns a TreeMapObject and deletes it. A borrowed TreeMapObject (jobj_parent set) must still go
// before its document does.
class Handle {
 public:
  Handle() = default;
  // Takes over the handle that an operation of the contract answered; null is allowed.
  explicit Handle(TreeMapObject* owned) : object_(owned) {}

  explicit operator bool() const { return object_ != nullptr; }
  TreeMapObject* get() const { return object_.get(); }
  // Requires: a handle is held.
  TreeMapObject* operator->() const { return object_.get(); }
  TreeMapObject& operator*() const { return *object_; }

  // Gives the handle up; the caller deletes it.
  [[nodiscard]] TreeMapObject* release() { return object_.release(); }

  operator View() const& { return View(object_.get()); }  // NOLINT(google-explicit-constructor)
  operator Edit() const& { return Edit(object_.get()); }  // NOLINT(google-explicit-constructor)
  operator View() const&& = delete;  // the document would be gone before the value is read
  operator Edit() const&& = delete;

 private:
  std::unique_ptr<TreeMapObject> object_;
};

// Owns one reference of a json-c value. Empty for JSON null.
class Value {
 public:
  Value() = default;
  // Takes over the caller's reference.
  explicit Value(json_object* owned) : value_(owned) {}
  // Takes a reference of its own: the value is then shared.
  static Value sharing(View value) { return Value(json_object_get(value.raw())); }

  explicit operator bool() const { return value_ != nullptr; }
  json_object* raw() const { return value_.get(); }

  // Gives the reference up to the caller.
  [[nodiscard]] json_object* release() { return value_.release(); }

  operator View() const& { return View(value_.get()); }  // NOLINT(google-explicit-constructor)
  operator Edit() const& { return Edit(value_.get()); }  // NOLINT(google-explicit-constructor)
  operator View() const&& = delete;
  operator Edit() const&& = delete;

 private:
  struct Put {
    void operator()(json_object* value) const { json_object_put(value); }
  };
  std::unique_ptr<json_object, Put> value_;
};

}  // namespace hearth

#endif
