// Writes of the types that read.h reads, and of whole values.
//
//   hearth::Result<void> written = hearth::set(document, "radios.[0].channel", 11);
//
//   value                            stored as
//   any integer, double, bool        that number or boolean; a double that is infinite or no number
//                                    is refused
//   const char*, std::string(_view)  a string, copied, NULs included; a null pointer is refused
//   nullptr                          JSON null
//   View, Handle, Value&             a copy that shares nothing with its source
//   Value&&                          the value itself
//
// Paths are those of JsonData::setJObj: what is missing on the way is made.
// Failure: kBadArgument for a null or empty path, one with a NUL inside, and a document that is not
// there; kNotStored for a value that JSON does not have and a path that the document has no place
// for (the contract logs why, and what earlier steps made stays); kNoMemory.
// Threads: one at a time per document.
// Cost: that of the contract's set.
#ifndef HEARTH_KIT_WRITE_H
#define HEARTH_KIT_WRITE_H

#include <json-c/json.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "hearth/json_data.h"
#include "hearth/kit/handle.h"
#include "hearth/kit/read.h"
#include "hearth/kit/result.h"
#include "hearth/kit/text.h"

namespace hearth {
namespace detail {

inline Result<Value> made(json_object* value) {
  if (value == nullptr) {
    return failure(Fault::kNoMemory, "there is no memory for the value");
  }
  return Value(value);
}

inline Result<Value> madeString(std::string_view text) {
  if (text.size() >= static_cast<std::size_t>(INT_MAX)) {
    return failure(Fault::kNotStored, "the text is too long");
  }
  return made(json_object_new_string_len(text.data() != nullptr ? text.data() : "",
                                         static_cast<int>(text.size())));
}

inline Result<Value> copied(View value) {
  if (!value) {
    return Value();
  }
  json_object* const copy = JsonData::cloneObject(value.raw());
  if (copy == nullptr) {
    return failure(Fault::kNotStored, "the value is nested too deeply, or there is no memory");
  }
  return Value(copy);
}

template <typename T>
inline constexpr bool isText =
    std::is_convertible_v<const T&, std::string_view> || std::is_convertible_v<T, const char*>;

template <typename T>
inline constexpr bool isWritable = std::is_same_v<T, std::nullptr_t> || isInteger<T> ||
                                   isOneOf<T, double, bool> || isText<T> ||
                                   (!std::is_arithmetic_v<T> && !std::is_pointer_v<T> &&
                                    std::is_convertible_v<const T&, View>) ||
                                   isOneOf<T, json_object*, TreeMapObject*>;

// A json-c value of what was given.
template <typename T>
Result<Value> valueOf(const T& given) {
  if constexpr (std::is_same_v<T, std::nullptr_t>) {
    return Value();
  } else if constexpr (std::is_same_v<T, bool>) {
    return made(json_object_new_boolean(given ? 1 : 0));
  } else if constexpr (isInteger<T> && std::is_signed_v<T>) {
    return made(json_object_new_int64(given));
  } else if constexpr (isInteger<T>) {
    const auto number = static_cast<uint64_t>(given);
    return made(number <= static_cast<uint64_t>(INT64_MAX)
                    ? json_object_new_int64(static_cast<int64_t>(number))
                    : json_object_new_uint64(number));
  } else if constexpr (std::is_same_v<T, double>) {
    if (!std::isfinite(given)) {
      return failure(Fault::kNotStored, "JSON has no number that is infinite or not a number");
    }
    return made(json_object_new_double(given));
  } else if constexpr (std::is_pointer_v<T> && isText<T>) {
    if (given == nullptr) {
      return failure(Fault::kBadArgument, "the text to store is a null pointer");
    }
    return madeString(given);
  } else if constexpr (isText<T>) {
    return madeString(given);
  } else {
    return copied(given);
  }
}

inline Result<void> stored(Edit document, Name path, json_object* value) {
  if (document.raw() == nullptr) {
    return failure(Fault::kBadArgument, "there is no document to write to");
  }
  if (path.isEmpty()) {
    return failure(Fault::kBadArgument, "the path is null, empty, or has a NUL inside");
  }
  if (JsonData::setJObj(document.raw(), path.get(), value) != 0) {
    return failure(Fault::kNotStored, "nothing can be stored at " + inQuotes(path.get()) +
                                          ": a part of it names a value that cannot hold the next");
  }
  return {};
}

}  // namespace detail

// Stores the value at path.
template <typename T>
Result<void> set(Edit document, Name path, const T& value) {
  using Given = std::decay_t<const T&>;
  static_assert(detail::isWritable<Given>,
                "hearth::set writes integers, double, bool, texts, nullptr, and values as View, "
                "Handle or Value; convert anything else first");
  if constexpr (detail::isWritable<Given>) {
    const Result<Value> made = detail::valueOf<Given>(value);
    return made ? detail::stored(document, path, made->raw()) : Result<void>(made.failure());
  } else {
    return {};
  }
}

// Stores the value itself; the document then owns it.
inline Result<void> set(Edit document, Name path, Value&& value) {
  const Value owned = std::move(value);
  return detail::stored(document, path, owned.raw());
}

// Removes the member or element at path, JSON null included; later elements move up. False when
// nothing is there.
inline bool remove(Edit document, Name path) {
  if (document.raw() == nullptr || path.isEmpty()) {
    return false;
  }
  json_object* container = nullptr;
  const char* key = nullptr;
  const bool isThere = JsonData::getJObj(document.raw(), path.get(), container, key) != nullptr;
  bool isRemoved = false;
  if (json_object_is_type(container, json_type_object) != 0 && key != nullptr) {
    isRemoved = json_object_object_get_ex(container, key, nullptr) != 0;
    json_object_object_del(container, key);
  } else if (isThere && container != nullptr) {
    Handle(new TreeMapObject(json_object_get(document.raw())))->del(path.get());
    isRemoved = true;
  }
  delete[] key;
  return isRemoved;
}

// A copy of a value that shares nothing with it; empty for nothing.
// Failure: kNotStored for a value nested deeper than the parser reads, or without memory.
inline Result<Value> copy(View value) {
  return detail::copied(value);
}

// A new empty object, and a new empty array.
inline Value newObject() {
  return Value(json_object_new_object());
}
inline Value newArray() {
  return Value(json_object_new_array());
}

// Appends a value to an array.
// Failure: as set; kNotStored when the document is no array.
template <typename T>
Result<void> append(Edit array, const T& value) {
  if (json_object_is_type(array.raw(), json_type_array) == 0) {
    return detail::failure(Fault::kNotStored, "the value to append to is no array");
  }
  const std::string path = "[" + std::to_string(json_object_array_length(array.raw())) + "]";
  return set(array, path, value);
}

}  // namespace hearth

#endif
