// The public operation that tells every violation.
#include "hearth/violations.h"

#include <climits>
#include <vector>

#include "check.h"

namespace hearth {
namespace {

using schema::parsed;

// "place keyword", with " (member)" where one is named, as it was told.
struct Told {
  std::vector<std::string> violations;
  size_t wanted = SIZE_MAX;
};

bool take(void* context, const Violation& violation) {
  Told& told = *static_cast<Told*>(context);
  EXPECT_EQ(violation.size, sizeof(Violation));
  EXPECT_STRNE(violation.sentence, "");
  const std::string member = violation.member;
  told.violations.push_back(std::string(violation.place) + " " + violation.keyword +
                            (member.empty() ? "" : " (" + member + ")"));
  return told.violations.size() < told.wanted;
}

struct Row {
  const char *schema, *instance;
  std::vector<std::string> violations;
};

TEST(Violations, TellsEachAtItsPlace) {
  const Row rows[] = {
      {R"({"properties":{"a":{"type":"string"},"b":{"minimum":2},"c":{}}})",
       R"({"a":1,"c":1,"b":1})",
       {"/a type", "/b minimum"}},
      {R"({"type":"array","enum":[2],"const":3,"maximum":0})",
       "1",
       {" type", " enum", " const", " maximum"}},
      {R"({"required":["a","b","c"]})", R"({"b":1})", {" required (a)", " required (c)"}},
      {R"({"items":{"required":["a"]},"maxItems":1})",
       R"([{},{"a":1},{}])",
       {" maxItems", "/0 required (a)", "/2 required (a)"}},
      {R"({"items":[{"minLength":2},false],"additionalItems":{"type":"null"}})",
       R"(["a",1,2,null])",
       {"/0 minLength", "/1 items", "/2 type"}},
  };
  for (const Row& row : rows) {
    Told told;
    EXPECT_EQ(
        findViolations(parsed(row.instance).get(), parsed(row.schema).get(), UINT_MAX, take, &told),
        Conformance::kViolates);
    EXPECT_EQ(told.violations, row.violations) << row.schema;
  }
}

}  // namespace
}  // namespace hearth
