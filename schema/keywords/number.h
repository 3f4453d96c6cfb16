// JSON numbers, compared and divided as the numbers that their texts say. json-c holds an integer
// of up to 64 bits with or without sign, or a double; converting the one into the other loses
// digits, so nothing here does.
#ifndef HEARTH_SCHEMA_KEYWORDS_NUMBER_H
#define HEARTH_SCHEMA_KEYWORDS_NUMBER_H

#include <cstdint>

struct json_object;

namespace hearth::schema {

struct Number {
  bool isDouble;
  bool negative;       // of an integer
  uint64_t magnitude;  // of an integer
  double real;
};

// The value of a json-c integer or double.
Number numberOf(json_object* value);

enum class Order { kLess, kEqual, kGreater, kNone };  // kNone: one of them is no number

Order compare(const Number& left, const Number& right);
Order compare(json_object* left, json_object* right);

// True without a fraction, be the number written as an integer or not.
[[nodiscard]] bool isIntegral(const Number& number);

// True when value is an integer times step, both taken as the shortest decimals that mean
// them: 19.99 is a multiple of 0.01. Requires a step above 0.
[[nodiscard]] bool isMultiple(const Number& value, const Number& step);

// Gives the count that a keyword such as maxLength has for its value. False when that is no integer
// or negative. An integer beyond 63 bits counts as the largest of these, which no size reaches.
[[nodiscard]] bool isCount(json_object* value, uint64_t& count);

}  // namespace hearth::schema

#endif
