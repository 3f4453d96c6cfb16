// A schema on the first line and an instance behind it, in a draft that the input's length chooses:
// the validator comes to one answer, and says why when it is no.
#include <algorithm>
#include <cstdint>

#include "fuzz/fuzz.h"
#include "schema/validate.h"

namespace {

using hearth::schema::Draft;
using hearth::schema::validate;
using hearth::schema::Violation;

// json-c reads NaN in any case.
bool namesNaN(const std::string& input) {
  constexpr char kName[] = {'n', 'a', 'n'};
  return std::search(input.begin(), input.end(), std::begin(kName), std::end(kName),
                     [](char left, char right) { return (left | 0x20) == right; }) != input.end();
}

// What contradicts itself: a value that satisfies a schema and its negation, or that is not equal
// to its own copy. References mean something else inside another schema, and NaN equals nothing.
void claimSense(const std::string& input, const fuzz::JsonRef& instance,
                const fuzz::JsonRef& schema, Draft draft) {
  if (input.find('$') != std::string::npos || input.find("id") != std::string::npos ||
      namesNaN(input)) {
    return;
  }
  const fuzz::JsonRef negation(json_object_new_object());
  json_object_object_add(negation.get(), "not", json_object_get(schema.get()));
  fuzz::claim(!validate(instance.get(), schema.get(), nullptr, draft) ||
                  !validate(instance.get(), negation.get(), nullptr, draft),
              "no value satisfies a schema and its negation");
  json_object* copy = nullptr;
  fuzz::claim(!instance || json_object_deep_copy(instance.get(), &copy, nullptr) == 0,
              "values can be copied");
  const fuzz::JsonRef same(json_object_new_object());
  json_object* const values = json_object_new_array();
  json_object_array_add(values, copy);
  json_object_object_add(same.get(), "enum", values);
  fuzz::claim(validate(instance.get(), same.get()), "a value equals its copy");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = input.find('\n');
  const fuzz::JsonRef schema(json_tokener_parse(input.substr(0, end).c_str()));
  if (!schema) {  // most mutations; nothing conforms to it
    return 0;
  }
  const fuzz::JsonRef instance(
      json_tokener_parse(end == std::string::npos ? "" : input.substr(end + 1).c_str()));
  const auto draft = static_cast<Draft>(size % 5);
  Violation violation;
  const bool answer = validate(instance.get(), schema.get(), nullptr, draft);
  fuzz::claim(validate(instance.get(), schema.get(), &violation, draft) == answer,
              "asking for the violation does not change the answer");
  int told = 0;
  const auto count = [](void* counted, Violation&) {
    ++*static_cast<int*>(counted);
    return true;
  };
  const auto all = tellViolations(instance.get(), schema.get(), {count, &told, SIZE_MAX}, draft);
  fuzz::claim((all == hearth::Conformance::kConforms) == answer && (told == 0) == answer,
              "asking for all violations does not change the answer");
  fuzz::claim(answer == violation.message.empty(),
              "a violation is told when there is one:", violation.message);
  claimSense(input, instance, schema, draft);
  return 0;
}
