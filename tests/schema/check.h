// The checkers that the validator's tables of cases go through.
#ifndef HEARTH_TESTS_SCHEMA_CHECK_H
#define HEARTH_TESTS_SCHEMA_CHECK_H

#include <gtest/gtest.h>
#include <json-c/json.h>
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/json_ref.h"
#include "schema/validate.h"

namespace hearth::schema {

// Parses also what is nested deeper than a file may be. The text "null" gives null.
inline JsonRef parsed(const std::string& text) {
  constexpr int kDepth = 5000;
  json_tokener* const tokener = json_tokener_new_ex(kDepth);
  JsonRef value(json_tokener_parse_ex(tokener, text.c_str(), static_cast<int>(text.size()) + 1));
  EXPECT_EQ(json_tokener_success, json_tokener_get_error(tokener)) << text.substr(0, 200);
  json_tokener_free(tokener);
  return value;
}

// False where PCRE2 is older than 10.40: it then lacks properties that patterns with scripts and
// the formats of international names need.
inline bool knowsScripts() {
  char version[64] = {};
  pcre2_config(PCRE2_CONFIG_VERSION, version);
  return std::strtod(version, nullptr) >= 10.40;
}

inline std::string repeated(const std::string& text, int times) {
  std::string out;
  while (times-- > 0) {
    out += text;
  }
  return out;
}

// A schema with the instances that conform to it and those that fail, in some of the drafts. These
// are named by the last digits of their names: '4', '6' and '7' are draft-04 to draft-07, '9' is
// 2019-09 and '0' 2020-12. So "46790" is all of them, "467" up to draft-07, "90" the two newest.
struct Case {
  const char* drafts;
  const char* schema;      // read as each of these drafts where it names none itself
  const char* conforming;  // a JSON array of instances
  const char* failing;     // another one
};

// The sentence of the first violation, when all are asked for.
inline std::string firstOfAll(json_object* instance, json_object* schema, Draft draft) {
  std::string first;
  const auto keepFirst = [](void* kept, Violation& violation) {
    std::string& text = *static_cast<std::string*>(kept);
    text = text.empty() ? violation.message : text;
    return true;
  };
  const bool conforms = tellViolations(instance, schema, {keepFirst, &first, SIZE_MAX}, draft) ==
                        Conformance::kConforms;
  EXPECT_EQ(first.empty(), conforms);
  return first;
}

// Asks in each of the row's drafts: with and without the violation, and for all violations. All
// must agree.
inline void checkEach(const Case& row, const char* instances, bool expected) {
  static constexpr char kDigits[] = "46790";
  const JsonRef schema = parsed(row.schema);
  const JsonRef list = parsed(instances);
  for (const char* digit = row.drafts; *digit; ++digit) {
    const auto draft = static_cast<Draft>(std::string(kDigits).find(*digit));
    for (std::size_t i = 0; i < json_object_array_length(list.get()); ++i) {
      json_object* const instance = json_object_array_get_idx(list.get(), i);
      Violation violation;
      EXPECT_EQ(expected, validate(instance, schema.get(), &violation, draft))
          << row.schema << "\n  draft " << *digit << ", instance "
          << json_object_to_json_string(instance) << ": " << violation.message;
      EXPECT_EQ(expected, violation.message.empty()) << row.schema;
      EXPECT_EQ(violation.message, firstOfAll(instance, schema.get(), draft)) << row.schema;
      EXPECT_EQ(expected, validate(instance, schema.get(), nullptr, draft)) << row.schema;
    }
  }
}

inline void check(std::initializer_list<Case> rows) {
  for (const Case& row : rows) {
    checkEach(row, row.conforming, true);
    checkEach(row, row.failing, false);
  }
}

}  // namespace hearth::schema

#endif
