// The public operation over a platform's validator. A stand-in for one is linked here, which lets
// texts conform and nothing else.
#include <gtest/gtest.h>

#include "hearth/violations.h"
#include "schema/json_validate.h"

int json_validate_instance(json_object* instance, json_object*) {
  return json_object_is_type(instance, json_type_string);
}

namespace hearth {
namespace {

bool count(void* context, const Violation& violation) {
  EXPECT_STREQ("", violation.place);
  EXPECT_STREQ("", violation.keyword);
  EXPECT_STRNE("", violation.sentence);
  ++*static_cast<int*>(context);
  return true;
}

TEST(ViolationsOfAPlatform, AreOneWithoutAPlace) {
  json_object* const text = json_object_new_string("");
  json_object* const schema = json_object_new_object();
  int told = 0;
  EXPECT_EQ(Conformance::kConforms, findViolations(text, schema, 9, count, &told));
  EXPECT_EQ(0, told);
  EXPECT_EQ(Conformance::kViolates, findViolations(nullptr, schema, 9, count, &told));
  EXPECT_EQ(Conformance::kViolates, findViolations(nullptr, schema, 0, count, &told));
  EXPECT_EQ(Conformance::kViolates, findViolations(nullptr, schema, 9, nullptr, nullptr));
  EXPECT_EQ(1, told);
  EXPECT_EQ(Conformance::kUnusable, findViolations(text, text, 9, count, &told));
  EXPECT_EQ(2, told);
  json_object_put(text);
  json_object_put(schema);
}

}  // namespace
}  // namespace hearth
