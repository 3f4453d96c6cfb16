// Exact reads: the value at a path as a C++ value, or nothing when it is not there, has another
// type or does not fit.
//
//   std::optional<int64_t> size = hearth::get<int64_t>(document, "quota.bytes");
//   int channel = hearth::getOr(radio, "channel", 6);
//
//   T                     read from
//   any integer type      a number without a fraction that fits: 5, 2.0 and 1e3, not 2.5; never
//                         cut, rounded or wrapped
//   double                a number that a double holds exactly: not 9007199254740993, and not 1e400
//   bool                  true and false
//   std::string_view      a string, NULs included; the document's, valid while the value is there
//                         unchanged
//   std::string           a copy of it
//
// Failure: std::nullopt, or the default. So also for a null path, one with a NUL inside, and a
// document that is not there. Paths are those of JsonData::getJObj, which logs an element that is
// missing; nothing else is logged.
// Threads: one at a time per document.
// Cost: that of the contract's get_ex; nothing is allocated, except for std::string.
#ifndef HEARTH_KIT_READ_H
#define HEARTH_KIT_READ_H

#include <json-c/json.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "hearth/json_data.h"
#include "hearth/kit/handle.h"
#include "hearth/kit/text.h"

namespace hearth {
namespace detail {

template <typename T, typename... Others>
inline constexpr bool isOneOf = (std::is_same_v<T, Others> || ...);

// Characters are no numbers; signed char and unsigned char are, as int8_t and uint8_t.
template <typename T>
inline constexpr bool isInteger =
    std::is_integral_v<T> && !isOneOf<T, bool, char, wchar_t, char16_t, char32_t>;

template <typename T>
inline constexpr bool isReadable =
    isInteger<T> || isOneOf<T, double, bool, std::string_view, std::string>;

// The type in which a default of type T is read: a text is read as a view.
template <typename T>
using Readable =
    std::conditional_t<std::is_convertible_v<T, const char*> && !std::is_same_v<T, std::nullptr_t>,
                       std::string_view, T>;

template <typename T>
std::optional<T> integerOf(json_object* value) {
  using Limits = std::numeric_limits<T>;
  const int64_t number = json_object_get_int64(value);
  if (number < 0) {
    if constexpr (std::is_signed_v<T>) {
      if (number >= int64_t{Limits::min()}) {
        return static_cast<T>(number);
      }
    }
    return std::nullopt;
  }
  // What is beyond the signed range reads as its largest number.
  const uint64_t magnitude = number == std::numeric_limits<int64_t>::max()
                                 ? json_object_get_uint64(value)
                                 : static_cast<uint64_t>(number);
  if (magnitude > static_cast<uint64_t>(Limits::max())) {
    return std::nullopt;
  }
  return static_cast<T>(magnitude);
}

// The largest number of an integer type plus 1 is a power of 2, which a double holds exactly.
template <typename T>
std::optional<T> integerOfDouble(double number) {
  using Limits = std::numeric_limits<T>;
  const double end = std::ldexp(1.0, Limits::digits);
  const double first = std::is_signed_v<T> ? -end : 0.0;
  if (!(number >= first && number < end) || std::trunc(number) != number) {
    return std::nullopt;
  }
  return static_cast<T>(number);
}

inline std::optional<double> doubleOfInteger(json_object* value) {
  const auto number = static_cast<double>(json_object_get_int64(value));
  const std::optional<int64_t> back = integerOfDouble<int64_t>(number);
  if (back && *back == json_object_get_int64(value)) {
    return number;
  }
  const auto magnitude = static_cast<double>(json_object_get_uint64(value));
  const std::optional<uint64_t> whole = integerOfDouble<uint64_t>(magnitude);
  if (whole && *whole != 0 && *whole == json_object_get_uint64(value)) {
    return magnitude;
  }
  return std::nullopt;
}

template <typename T>
std::optional<T> exactly(json_object* value) {
  const json_type type = json_object_get_type(value);
  if constexpr (isInteger<T>) {
    if (type == json_type_int) {
      return integerOf<T>(value);
    }
    if (type == json_type_double) {
      return integerOfDouble<T>(json_object_get_double(value));
    }
  } else if constexpr (std::is_same_v<T, double>) {
    if (type == json_type_double) {
      const double number = json_object_get_double(value);
      return std::isfinite(number) ? std::optional<double>(number) : std::nullopt;
    }
    if (type == json_type_int) {
      return doubleOfInteger(value);
    }
  } else if constexpr (std::is_same_v<T, bool>) {
    if (type == json_type_boolean) {
      return json_object_get_boolean(value) != 0;
    }
  } else {
    if (type == json_type_string) {
      return T(json_object_get_string(value),
               static_cast<std::size_t>(json_object_get_string_len(value)));
    }
  }
  return std::nullopt;
}

}  // namespace detail

// The value at path below the document; nothing when there is none, JSON null included.
inline View find(View document, Name path) {
  if (!document || path.isNull()) {
    return View();
  }
  return View(JsonData::getJObj(document.raw(), path.get()));
}

// The value itself as a T, or nothing.
template <typename T>
std::optional<T> get(View value) {
  static_assert(detail::isReadable<T>,
                "hearth::get reads integers, double, bool, std::string_view and std::string; read "
                "an object or array with hearth::find, hearth::members or hearth::elements");
  if constexpr (detail::isReadable<T>) {
    return value ? detail::exactly<T>(value.raw()) : std::nullopt;
  } else {
    return std::nullopt;
  }
}

// The value at path as a T, or nothing.
template <typename T>
std::optional<T> get(View document, Name path) {
  return get<T>(find(document, path));
}

// The same with a default. The type of the default is the type that is read: an int reads an int, a
// text a std::string_view.
template <typename T>
detail::Readable<T> getOr(View document, Name path, T fallback) {
  using Read = detail::Readable<T>;
  return get<Read>(document, path).value_or(Read(fallback));
}

}  // namespace hearth

#endif
