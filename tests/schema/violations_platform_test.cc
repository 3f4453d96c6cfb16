// The public operation over a platform's validator, for which a stand-in is linked: it finds that
// texts conform.
#include <gtest/gtest.h>

#include "hearth/violations.h"
#include "schema/json_validate.h"

int json_validate_instance(json_object* instance, json_object*) {
  return json_object_is_type(instance, json_type_string);
}

namespace hearth {
namespace {

bool count(void* context, const Violation& violation) {
  EXPECT_STREQ(violation.place, "");
  EXPECT_STREQ(violation.keyword, "");
  EXPECT_STRNE(violation.sentence, "");
  ++*static_cast<int*>(context);
  return true;
}

TEST(ViolationsOfAPlatform, AreOneWithoutAPlace) {
  json_object* const text = json_object_new_string("");
  json_object* const schema = json_object_new_object();
  int told = 0;
  EXPECT_EQ(findViolations(text, schema, 9, count, &told), Conformance::kConforms);
  EXPECT_EQ(told, 0);
  EXPECT_EQ(findViolations(nullptr, schema, 9, count, &told), Conformance::kViolates);
  EXPECT_EQ(findViolations(nullptr, schema, 0, count, &told), Conformance::kViolates);
  EXPECT_EQ(findViolations(nullptr, schema, 9, nullptr, nullptr), Conformance::kViolates);
  EXPECT_EQ(told, 1);
  EXPECT_EQ(findViolations(text, text, 9, count, &told), Conformance::kUnusable);
  EXPECT_EQ(told, 2);
  json_object_put(text);
  json_object_put(schema);
}

}  // namespace
}  // namespace hearth
