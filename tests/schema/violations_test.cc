// The public operation that tells every violation: which ones, in which order, up to a limit, and
// what it says of a schema that cannot be used.
#include "hearth/violations.h"

#include <climits>
#include <vector>

#include "check.h"

namespace hearth {
namespace {

using schema::parsed;
using schema::repeated;

// A listener that remembers.
struct Told {
  std::vector<std::string> violations;  // "place keyword" or "place keyword (member)"
  std::string sentence;                 // the last one
  std::size_t wanted = SIZE_MAX;        // how many it wants to hear of
};

bool take(void* context, const Violation& violation) {
  Told& told = *static_cast<Told*>(context);
  EXPECT_EQ(sizeof(Violation), violation.size);
  std::string line = std::string(violation.place) + " " + violation.keyword;
  line += *violation.member ? std::string(" (") + violation.member + ")" : "";
  told.violations.push_back(line);
  told.sentence = violation.sentence;
  return told.violations.size() < told.wanted;
}

Conformance find(const std::string& instance, const std::string& schema, Told& told,
                 unsigned limit = UINT_MAX) {
  return findViolations(parsed(instance).get(), parsed(schema).get(), limit, take, &told);
}

#define D19 R"("$schema":"https://json-schema.org/draft/2019-09/schema",)"

struct ToldCase {
  const char* schema;
  const char* instance;
  std::vector<std::string> violations;
};

TEST(Violations, TellsEachAtItsPlace) {
  const ToldCase rows[] = {
      {R"({"properties":{"a":{"type":"string"},"b":{"minimum":2},"c":{}},"type":"object"})",
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
      {R"({"additionalProperties":false,"patternProperties":{"^a":{"minimum":2},"b$":false}})",
       R"({"ab":1,"x":1,"y":1})",
       {"/ab minimum", "/ab patternProperties", "/x additionalProperties",
        "/y additionalProperties"}},
      {R"({"propertyNames":{"allOf":[{"maxLength":1},{"pattern":"^a"}]}})",
       R"({"a":1,"ab":1,"b":1})",
       {" maxLength (ab)", " pattern (b)"}},
      {R"({"dependencies":{"a":["b","c"],"d":{"required":["e"]}}})",
       R"({"a":1,"d":1})",
       {" dependencies (b)", " dependencies (c)", " required (e)"}},
      {"{" D19 R"("dependentRequired":{"a":["b","c"],"d":["e"],"f":["g"]}})",
       R"({"a":1,"c":1,"f":1})",
       {" dependentRequired (b)", " dependentRequired (g)"}},
      {R"({"allOf":[{"minimum":2},{"$ref":"#/definitions/a"}],"definitions":{"a":{"maximum":0}}})",
       "1",
       {" minimum", " maximum"}},
      {R"({"if":{"minimum":5},"else":{"multipleOf":2,"minimum":3},"not":{"const":1}})",
       "1",
       {" not", " multipleOf", " minimum"}},
      // One for a combination, whatever fails inside; and none for a trial that may fail.
      {R"({"properties":{"a":{"anyOf":[{"type":"null"},{"required":["b","c"]}]},
           "d":{"oneOf":[true,true]},"e":{"anyOf":[false,true],"if":false,"contains":{"const":1}}}})",
       R"({"a":{},"d":1,"e":[2,3]})",
       {"/a anyOf", "/d oneOf", "/e contains"}},
      // What was refused by its own rule counts as looked at.
      {"{" D19 R"("properties":{"a":{"type":"null"}},"unevaluatedProperties":false})",
       R"({"a":1,"b":1,"c":1})",
       {"/a type", "/b unevaluatedProperties", "/c unevaluatedProperties"}},
      // A schema that is read twice is told of once.
      {R"({"minLength":9,"$ref":"#/definitions/a","definitions":{"a":{"maxLength":0}}})",
       R"("b")",
       {" maxLength"}},
      {"{" D19 R"("minLength":9,"maxLength":0,"$id":"http://x/a","$defs":{"a":{"minLength":9,
           "$id":"b","maxLength":0}},"$ref":"b"})",
       R"("b")",
       {" minLength", " maxLength", " minLength", " maxLength"}},
  };
  for (const ToldCase& row : rows) {
    Told told;
    EXPECT_EQ(Conformance::kViolates, find(row.instance, row.schema, told)) << row.schema;
    EXPECT_EQ(row.violations, told.violations) << row.schema;
    for (std::size_t limit = 0; limit <= row.violations.size(); ++limit) {
      Told fewer;
      EXPECT_EQ(Conformance::kViolates,
                find(row.instance, row.schema, fewer, static_cast<unsigned>(limit)));
      EXPECT_EQ(limit, fewer.violations.size()) << row.schema;
      Told stopped;
      stopped.wanted = limit + 1;
      EXPECT_EQ(Conformance::kViolates, find(row.instance, row.schema, stopped));
      EXPECT_EQ(std::min(limit + 1, row.violations.size()), stopped.violations.size());
    }
  }
  EXPECT_EQ(Conformance::kViolates,
            findViolations(nullptr, parsed("false").get(), 1, nullptr, nullptr));
}

TEST(Violations, TellsAnUnusableSchemaFromABadValue) {
  struct Answer {
    std::string schema;
    std::string instance;
    Conformance conformance;
    const char* reason;  // in the last sentence; "" when there is none
  };
  const std::string deep = repeated("[", 150) + repeated("]", 150);
  constexpr Conformance kUnusable = Conformance::kUnusable, kExhausted = Conformance::kExhausted;
  const Answer rows[] = {
      {R"({"type":"integer"})", "1", Conformance::kConforms, ""},
      {"true", "1", Conformance::kConforms, ""},
      {"null", "1", kUnusable, "the schema here is null, not an object or a boolean"},
      {"[]", "1", kUnusable, "the schema here is an array, not an object or a boolean"},
      {R"({"not":{"type":"text"}})", "1", kUnusable, "\"type\" cannot have the value \"text\""},
      {R"({"$ref":"#/a"})", "1", kUnusable, "the reference \"#/a\" leads nowhere"},
      {R"({"$ref":"#"})", "1", kUnusable, "a reference in the schema leads back to itself"},
      {R"({"pattern":"("})", "\"a\"", kUnusable,
       "a pattern of \"pattern\" is no usable regular expression"},
      {R"({"allOf":[{"$ref":"a"},{"$id":"http://)" + repeated("x", 3000) + R"("}]})", "1",
       kUnusable, "an identifier in the schema is too long"},
      {R"({"$schema":"http://x/m","definitions":{"m":{)" D19 R"("$id":"http://x/m",
           "$vocabulary":{"http://x/own":true}}}})",
       "1", kUnusable, "the schema requires a vocabulary that is not known"},
      {R"({"items":{"$ref":"#"}})", deep, kExhausted, "schema or value are nested too deeply"},
      {R"({"pattern":"^(a|aa)+$"})", "\"" + repeated("a", 60) + "!\"", kExhausted,
       "a pattern of \"pattern\" takes too much work"},
      {R"({"items":{"enum":[)" + repeated("1,", 9'999) + "1]}}", "[" + repeated("2,", 1'999) + "2]",
       kExhausted, "it takes too much work"},
      // Telling has an end too.
      {R"({"items":false})", "[" + repeated("1,", 199'999) + "1]", kExhausted,
       "it takes too much work"},
      // The members that are missing are told before the one that is no name.
      {R"({"required":["a","b",1]})", "{}", kUnusable,
       "\"required\" cannot have the value an array of 3 elements"},
  };
  for (const Answer& row : rows) {
    Told told;
    EXPECT_EQ(row.conformance, find(row.instance, row.schema, told)) << row.schema.substr(0, 80);
    const std::string reason = *row.reason ? std::string("cannot be checked: ") + row.reason : "";
    EXPECT_EQ(reason, told.sentence) << row.schema.substr(0, 80);
    EXPECT_EQ(row.conformance == Conformance::kConforms,
              find(row.instance, row.schema, told, 0) == Conformance::kConforms);
  }
}

}  // namespace
}  // namespace hearth
