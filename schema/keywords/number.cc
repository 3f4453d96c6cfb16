#include "schema/keywords/number.h"

#include <json-c/json.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace hearth {
namespace schema {
namespace {

constexpr double kTwoTo64 = 18446744073709551616.0;

// A finite double below 2^64 in magnitude, cut into its whole part and what is left.
struct Parts {
  bool negative;
  uint64_t whole;
  bool fraction;
};

Parts partsOf(double real) {
  const double magnitude = std::fabs(real);
  const double whole = std::floor(magnitude);
  return {real < 0, static_cast<uint64_t>(whole), whole < magnitude};
}

Parts partsOf(const Number& number) {
  return number.isDouble ? partsOf(number.real) : Parts{number.negative, number.magnitude, false};
}

Order orderOf(bool less, bool greater) {
  return less ? Order::kLess : greater ? Order::kGreater : Order::kEqual;
}

Order compareDoubles(double left, double right) {
  if (std::isnan(left) || std::isnan(right)) {
    return Order::kNone;
  }
  return orderOf(left<right, left> right);
}

Order reversed(Order order) {
  return order == Order::kLess ? Order::kGreater : order == Order::kGreater ? Order::kLess : order;
}

Order compareMagnitudes(const Parts& left, const Parts& right) {
  if (left.whole != right.whole) {
    return orderOf(left.whole < right.whole, true);
  }
  return orderOf(!left.fraction && right.fraction, left.fraction && !right.fraction);
}

bool isHuge(const Number& number) {
  return number.isDouble && !(std::fabs(number.real) < kTwoTo64);
}

// A number as digits * 10^exponent, its digits not ending in 0.
struct Decimal {
  uint64_t digits;
  int exponent;
};

Decimal stripped(uint64_t digits, int exponent) {
  while (digits != 0 && digits % 10 == 0) {
    digits /= 10;
    ++exponent;
  }
  return {digits, exponent};
}

// The shortest decimal that reads back as this double: at most 17 digits.
Decimal decimalOf(double real) {
  char text[32] = {};
  std::to_chars(text, text + sizeof text - 1, std::fabs(real), std::chars_format::scientific);
  uint64_t digits = 0;
  int places = 0;
  const char* c = text;
  for (bool fraction = false; *c != 'e'; ++c) {
    if (*c == '.') {
      fraction = true;
      continue;
    }
    digits = digits * 10 + static_cast<uint64_t>(*c - '0');
    places += fraction;
  }
  const auto exponent = static_cast<int>(strtol(c + 1, nullptr, 10));
  return stripped(digits, exponent - places);
}

Decimal decimalOf(const Number& number) {
  return number.isDouble ? decimalOf(number.real) : stripped(number.magnitude, 0);
}

uint64_t addModulo(uint64_t a, uint64_t b, uint64_t modulus) {
  return a >= modulus - b ? a - (modulus - b) : a + b;
}

uint64_t timesTenModulo(uint64_t a, uint64_t modulus) {
  const uint64_t two = addModulo(a, a, modulus);
  const uint64_t four = addModulo(two, two, modulus);
  return addModulo(addModulo(four, four, modulus), two, modulus);
}

}  // namespace

Number numberOf(json_object* value) {
  if (json_object_get_type(value) == json_type_double) {
    return {true, false, 0, json_object_get_double(value)};
  }
  const int64_t number = json_object_get_int64(value);
  if (number < 0) {
    return {false, true, uint64_t{0} - static_cast<uint64_t>(number), 0};
  }
  return {false, false,
          number == INT64_MAX ? json_object_get_uint64(value) : static_cast<uint64_t>(number), 0};
}

Order compare(const Number& left, const Number& right) {
  if (left.isDouble && right.isDouble) {
    return compareDoubles(left.real, right.real);
  }
  if (isHuge(left) || isHuge(right)) {  // next to anything that an integer can be
    return compareDoubles(left.isDouble ? left.real : 0, right.isDouble ? right.real : 0);
  }
  const Parts a = partsOf(left);
  const Parts b = partsOf(right);
  if (a.negative != b.negative) {
    return orderOf(a.negative, true);
  }
  const Order order = compareMagnitudes(a, b);
  return a.negative ? reversed(order) : order;
}

Order compare(json_object* left, json_object* right) {
  if (json_object_get_type(left) == json_type_int && json_object_get_type(right) == json_type_int) {
    const int64_t a = json_object_get_int64(left);
    const int64_t b = json_object_get_int64(right);
    if (a != INT64_MAX || b != INT64_MAX) {  // json-c gives the largest for all beyond it, too
      return orderOf(a<b, a> b);
    }
  }
  return compare(numberOf(left), numberOf(right));
}

bool isIntegral(const Number& number) {
  return !number.isDouble || std::floor(number.real) == std::ceil(number.real);
}

bool isMultiple(const Number& value, const Number& step) {
  if ((value.isDouble && !std::isfinite(value.real)) ||
      (step.isDouble && !std::isfinite(step.real))) {
    return false;
  }
  const Decimal a = decimalOf(value);
  const Decimal b = decimalOf(step);
  // A multiple of 10 ends in 0; the digits of a do not.
  if (a.digits == 0 || b.digits == 0 || a.exponent < b.exponent) {
    return a.digits == 0;
  }
  uint64_t rest = a.digits % b.digits;
  for (int i = a.exponent - b.exponent; i > 0 && rest != 0; --i) {
    rest = timesTenModulo(rest, b.digits);
  }
  return rest == 0;
}

bool isCount(json_object* value, uint64_t* count) {
  if (json_object_get_type(value) == json_type_int) {
    const int64_t small = json_object_get_int64(value);
    *count = static_cast<uint64_t>(small);  // what is beyond it counts as the largest of these
    return small >= 0;
  }
  const Number number = numberOf(value);
  if (!isIntegral(number) || number.real < 0) {
    return false;
  }
  *count = number.real < kTwoTo64 ? static_cast<uint64_t>(number.real) : UINT64_MAX;
  return true;
}

}  // namespace schema
}  // namespace hearth
