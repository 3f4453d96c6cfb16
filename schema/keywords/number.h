// JSON numbers, compared and divided as the numbers that their texts say. json-c holds an integer
// of up to 64 bits with or without sign, or a double; converting the one into the other loses
// digits, so nothing here does.
#ifndef HEARTH_SCHEMA_KEYWORDS_NUMBER_H
#define HEARTH_SCHEMA_KEYWORDS_NUMBER_H

#include <cstdint>

struct json_object;

namespace hearth {
namespace schema {

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

// Whether it has no fraction, be it written as an integer or not.
bool isIntegral(const Number& number);

// Whether value is an integer times step, both taken as the shortest decimals that mean them: 19.99
// is a multiple of 0.01. Requires a step above 0.
bool isMultiple(const Number& value, const Number& step);

// The count that a keyword such as maxLength gives, in *count; false when it is no integer or
// negative. What is beyond 63 bits counts as that much.
bool isCount(json_object* value, uint64_t* count);

}  // namespace schema
}  // namespace hearth

#endif
