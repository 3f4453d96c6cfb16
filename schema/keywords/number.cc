// Arithmetic that loses no digit.
//
// Two numbers are compared by sign, then by their whole parts as 64-bit integers, then by whether a
// fraction is left; only two doubles are compared as doubles. A double of 2^64 or more lies beyond
// every integer of json-c's, so there its sign decides.
//
// A division works on decimals, since 19.99 is no multiple of 0.01 among doubles. Value and step
// are written as digits * 10^exponent; the step divides the value when the digits of the step
// divide the digits of the value with the difference of the exponents as zeros behind them.
#include "schema/keywords/number.h"

#include <json-c/json.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace hearth::schema {
namespace {

constexpr double kTwoTo64 = 18446744073709551616.0;

// A number below 2^64 in magnitude, cut into what a comparison needs.
struct Parts {
  bool negative;
  uint64_t whole;  // of the magnitude
  bool fraction;   // something is left behind the whole part
};

// Requires a finite double below 2^64 in magnitude.
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

// Of two negative numbers, the one with the greater magnitude is less.
Order reversed(Order order) {
  return order == Order::kLess ? Order::kGreater : order == Order::kGreater ? Order::kLess : order;
}

// Requires that not both have fractions: one of two numbers at least is an integer here.
Order compareMagnitudes(const Parts& left, const Parts& right) {
  if (left.whole != right.whole) {
    return orderOf(left.whole < right.whole, true);
  }
  return orderOf(!left.fraction && right.fraction, left.fraction && !right.fraction);
}

// True for a double that no integer of json-c's reaches, and for NaN.
bool isHuge(const Number& number) {
  return number.isDouble && !(std::fabs(number.real) < kTwoTo64);
}

// A magnitude as digits * 10^exponent, its digits not ending in 0.
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

// The shortest decimal that reads back as this double: at most 17 digits. It is written as text,
// "1.999e+01", and read back as digits and exponent.
Decimal decimalOf(double real) {
  char text[32] = {};
  std::to_chars(text, text + sizeof(text) - 1, std::fabs(real), std::chars_format::scientific);
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

// Sums that stay below the modulus, which may be near 2^64.
uint64_t addModulo(uint64_t a, uint64_t b, uint64_t modulus) {
  return a >= modulus - b ? a - (modulus - b) : a + b;
}

// 10 a = 8 a + 2 a, doubled three times.
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
  const int64_t number = json_object_get_int64(value);  // INT64_MAX also for what is above it
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
  if (isHuge(left) || isHuge(right)) {  // beside it any integer may count as 0
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
    if (a != INT64_MAX || b != INT64_MAX) {  // json-c gives INT64_MAX for all above it too
      return orderOf(a<b, a> b);
    }
  }
  return compare(numberOf(left), numberOf(right));
}

bool isIntegral(const Number& number) {
  return !number.isDouble || std::floor(number.real) == std::ceil(number.real);
}

bool isMultiple(const Number& value, const Number& step) {
  // json-c reads NaN and Infinity, which are a multiple of nothing and no step.
  if ((value.isDouble && !std::isfinite(value.real)) ||
      (step.isDouble && !std::isfinite(step.real))) {
    return false;
  }
  const Decimal a = decimalOf(value);
  const Decimal b = decimalOf(step);
  // With the smaller exponent, a would have to end in 0 to be a multiple; its digits do not.
  if (a.digits == 0 || b.digits == 0 || a.exponent < b.exponent) {
    return a.digits == 0;
  }
  // Long division: the rest, with one zero after the other brought down.
  uint64_t rest = a.digits % b.digits;
  for (int i = a.exponent - b.exponent; i > 0 && rest != 0; --i) {
    rest = timesTenModulo(rest, b.digits);
  }
  return rest == 0;
}

bool isCount(json_object* value, uint64_t& count) {
  if (json_object_get_type(value) == json_type_int) {
    const int64_t small = json_object_get_int64(value);
    count = static_cast<uint64_t>(small);
    return small >= 0;
  }
  const Number number = numberOf(value);
  if (!isIntegral(number) || number.real < 0) {
    return false;
  }
  count = number.real < kTwoTo64 ? static_cast<uint64_t>(number.real) : UINT64_MAX;
  return true;
}

}  // namespace hearth::schema
