// The first violation: where and why, the reason a schema that cannot be used is refused with, and
// that mean pairs of schema and instance come to an end.
#include "check.h"
#include "tests/support/scratch.h"

namespace hearth::schema {
namespace {

#define D19 R"("$schema":"https://json-schema.org/draft/2019-09/schema",)"

struct Told {
  std::string schema;
  std::string instance;
  const char* instanceLocation;
  const char* schemaLocation;
  const char* keyword;
  std::string message;
};

TEST(Violation, TellsWhereAndWhy) {
  const Told rows[] = {
      {R"({"properties":{"a/b":{"items":{"type":"string"}}}})", R"({"a/b":["x",1]})", "/a~1b/1",
       "/properties/a~1b/items/type", "type", "must be a string, but is an integer"},
      {R"({"type":["null","object"]})", "1.5", "", "/type", "type",
       "must be one of the types \"null\", \"object\", but is a number"},
      {R"({"maxLength":2})", R"("äöü")", "", "/maxLength", "maxLength",
       "must be at most 2 characters long, but has 3"},
      {R"({"minItems":1})", "[]", "", "/minItems", "minItems",
       "must have at least 1 element, but has 0"},
      {R"({"maximum":1.5})", "2", "", "/maximum", "maximum", "must be at most 1.5, but is 2"},
      {R"({"enum":[1,"a",[],null]})", "{}", "", "/enum", "enum",
       "must be one of 1, \"a\", an array of 0 elements, null, but is an object of 0 members"},
      {R"({"pattern":"^a"})", R"("b\u001b[2J")", "", "/pattern", "pattern",
       "must match the pattern \"^a\", but is \"b [2J\""},
      {R"({"const":1})", "\"\xC0\xAFä\xC2\x9B[2J\"", "", "/const", "const",
       "must be 1, but is \"??ä [2J\""},
      {R"({"uniqueItems":true})", "[1,2,3,2]", "", "/uniqueItems", "uniqueItems",
       "must not hold equal elements, but elements 1 and 3 are equal"},
      {R"({"required":["a","b"]})", R"({"a":1})", "", "/required", "required",
       "must have the member \"b\""},
      {R"({"additionalProperties":false})", R"({"a":1})", "/a", "/additionalProperties",
       "additionalProperties", "is not allowed here"},
      {R"({"contains":{"const":1}})", "[2]", "", "/contains", "contains",
       "must have at least 1 matching \"contains\", but has 0"},
      {R"({"dependencies":{"a":["b"]}})", R"({"a":1})", "", "/dependencies", "dependencies",
       "must have the member \"b\", because another member needs it"},
      {"{" D19 R"("dependentRequired":{"a":["b"]}})", R"({"a":1})", "", "/dependentRequired",
       "dependentRequired", "must have the member \"b\", because it has \"a\""},
      // A long text is cut between two characters.
      {R"({"const":1})", "\"" + repeated("x", 59) + "äy\"", "", "/const", "const",
       "must be 1, but is \"" + repeated("x", 59) + "...\""},
      {R"({"not":{}})", "1", "", "/not", "not", "must not match the schema of \"not\""},
      {R"({"oneOf":[true,true]})", "1", "", "/oneOf", "oneOf",
       "must match exactly one of the alternatives, but matches more"},
      // The alternative that failed deepest in the instance is likely the one that was meant.
      {R"({"anyOf":[{"type":"string"},{"properties":{"a":{"minimum":5}}}]})", R"({"a":1})", "",
       "/anyOf", "anyOf",
       "must match at least one of 2 alternatives, but matches none; the closest is number 2: /a "
       "must be at least 5, but is 1"},
      {R"({"$ref":"#/definitions/a","definitions":{"a":{"minimum":5}}})", "1", "",
       "/definitions/a/minimum", "minimum", "must be at least 5, but is 1"},
      {R"({"$ref":"http://json-schema.org/draft-07/schema#"})", R"({"title":1})", "/title",
       "http://json-schema.org/draft-07/schema#/properties/title/type", "type",
       "must be a string, but is an integer"},
  };
  for (const Told& row : rows) {
    Violation violation;
    EXPECT_FALSE(validate(parsed(row.instance).get(), parsed(row.schema).get(), &violation));
    EXPECT_EQ(row.instanceLocation, violation.instanceLocation) << row.schema;
    EXPECT_EQ(row.schemaLocation, violation.schemaLocation) << row.schema;
    EXPECT_EQ(row.keyword, violation.keyword) << row.schema;
    EXPECT_EQ(row.message, violation.message) << row.schema;
  }
}

// A schema that cannot be used is never conformed to, whatever stands around it.
TEST(Violation, RefusesUnusableSchemas) {
  struct Unusable {
    std::string schema;
    const char* schemaLocation;
    const char* reason;
  };
  const Unusable rows[] = {
      {R"({"type":5})", "/type", "\"type\" cannot have the value 5"},
      {R"({"type":"text"})", "/type", "\"type\" cannot have the value \"text\""},
      {R"({"minLength":-1})", "/minLength", "\"minLength\" cannot have the value -1"},
      {R"({"multipleOf":0})", "/multipleOf", "\"multipleOf\" cannot have the value 0"},
      {R"({"required":[1]})", "/required",
       "\"required\" cannot have the value an array of 1 element"},
      {R"({"if":{"type":["nul","string"]}})", "/if/type",
       "\"type\" cannot have the value an array of 2 elements"},
      {R"({"items":null})", "/items", "\"items\" cannot have the value null"},
      {R"({"allOf":[5]})", "/allOf/0", "the schema here is an integer, not an object or a boolean"},
      {R"({"$ref":"#/a"})", "/$ref", "the reference \"#/a\" leads nowhere"},
      {R"({"$ref":"http://localhost/"})", "/$ref",
       "the reference \"http://localhost/\" leads nowhere"},
      {R"({"$ref":"file:///etc/passwd"})", "/$ref",
       "the reference \"file:///etc/passwd\" leads nowhere"},
      {R"({"$ref":"#"})", "", "a reference in the schema leads back to itself"},
      {R"({"allOf":[{"$ref":"#"}]})", "", "a reference in the schema leads back to itself"},
      {R"({"pattern":"("})", "/pattern",
       "a pattern of \"pattern\" is no usable regular expression"},
      {R"({"patternProperties":{"a++":{}}})", "/patternProperties",
       "a pattern of \"patternProperties\" is no usable regular expression"},
      {R"({"pattern":"(?=(a+)+$b)|^(a|aa)+$"})", "/pattern",
       "a pattern of \"pattern\" takes too much work"},
  };
  const JsonRef text = parsed("\"" + repeated("a", 60) + "!\"");
  for (const auto& [schema, schemaLocation, reason] : rows) {
    const auto names = [&text = schema](const char* word) {
      return text.find(word) != std::string::npos;
    };
    const JsonRef instance = names("Properties") || names("required") ? parsed(R"({"a":1})")
                             : names("multipleOf")                    ? parsed("1")
                                                   : JsonRef(json_object_get(text.get()));
    Violation violation;
    EXPECT_FALSE(validate(instance.get(), parsed(schema).get(), &violation)) << schema;
    EXPECT_EQ(std::string("cannot be checked: ") + reason, violation.message) << schema;
    if (schema.find("#\"") == std::string::npos) {
      EXPECT_EQ(schemaLocation, violation.schemaLocation) << schema;
      const JsonRef inside =
          parsed(R"({"not":{"anyOf":[{"$id":"http://x/"}]},"not":)" + schema + "}");
      EXPECT_FALSE(validate(instance.get(), inside.get())) << schema;
    }
  }
  EXPECT_FALSE(validate(text.get(), nullptr));
  EXPECT_TRUE(validate(nullptr, parsed(R"({"type":"null"})").get()));
}

// A schema that has every value checked 2^39 times against the leaf.
std::string doubled(const std::string& leaf, const std::string& keyword) {
  std::string schema = R"({"$defs":{"0":)" + leaf;
  for (int i = 1; i < 40; ++i) {
    const std::string below = R"({"$ref":"#/$defs/)" + std::to_string(i - 1) + "\"}";
    schema += ",\"" + std::to_string(i) + "\":{\"" + keyword + "\":[" + below + "," + below + "]}";
  }
  return schema + R"(},"$ref":"#/$defs/39"})";
}

// Schemas and instances, each of which would take for ever, or a stack of megabytes, or the square
// of its size.
std::vector<std::pair<std::string, std::string>> meanPairs() {
  std::vector<std::pair<std::string, std::string>> pairs;
  pairs.emplace_back(doubled(R"({"type":"string"})", "anyOf"), "1");
  pairs.emplace_back(repeated(R"({"not":)", 1500) + "{}" + repeated("}", 1500), "1");
  pairs.emplace_back(R"({"items":{"$ref":"#"}})", repeated("[", 1500) + repeated("]", 1500));
  const std::string deep = repeated("[", 1500) + repeated("]", 1500);
  pairs.emplace_back(R"({"const":)" + deep + "}", deep);
  pairs.emplace_back(R"({"uniqueItems":true})", "[" + deep + "," + deep + repeated(",1", 20) + "]");
  pairs.emplace_back(R"({"pattern":")" + repeated("(", 300) + repeated(")", 300) + "\"}", "\"a\"");
  pairs.emplace_back(R"({"pattern":"(?=[^x]*)y"})", "\"" + repeated("a", 1'000'000) + "\"");
  std::string anchored = R"({"unevaluatedProperties":true,"$dynamicAnchor":"a","anyOf":[)";
  pairs.emplace_back(anchored + R"({"$dynamicRef":"#a"}],"$ref":"#b"})", R"({"a":1})");
  std::string ids = R"({"$id":"http://x/)" + repeated("long/", 380) + R"(","allOf":[{"$ref":"n"})";
  pairs.emplace_back(ids + repeated(R"(,{"$id":"a"})", 20'000) + "]}", "1");
  pairs.emplace_back(R"({"enum":[)" + repeated("1,", 50'000) + "2]}", "3");
  pairs.emplace_back(R"({"items":{"enum":[)" + repeated("1,", 20'000) + "2]}}",
                     "[" + repeated("2,", 20'000) + "2]");
  const std::string name = "\"" + repeated("n", 1'000'000) + "\"";
  const std::string ones = repeated("0,", 9'999) + repeated("1,", 9'999);
  std::string names = "\"a\"";
  for (int i = 0; i < 200'000; ++i) {
    names += ",\"" + std::to_string(i) + "\"";
  }
  for (const std::string& leaf :
       {std::string(R"({"properties":{"a":{}}})"), R"({"properties":{)" + name + ":{}}}",
        R"({"required":[)" + name + "]}"}) {
    pairs.emplace_back(doubled(leaf, "allOf"), "{" + name + ":1}");
  }
  // Few to find, many to tell.
  pairs.emplace_back(doubled(R"({"type":"string"})", "allOf"), "1");
  pairs.emplace_back(doubled(R"({"properties":{)" + name + ":false}}", "allOf"),
                     "{" + name + ":1}");
  pairs.emplace_back(doubled(R"({"uniqueItems":true})", "allOf"), "[" + ones + "1]");
  pairs.emplace_back(R"({"required":[)" + names + "]}", "{}");
  pairs.emplace_back(R"({"format":"idn-hostname","pattern":"^b"})",
                     "\"" + repeated("a.", 500'000) + "\"");
  pairs.emplace_back(R"({"anyOf":[)" + repeated(R"({"type":"string"},)", 50'000) + "false]}", "1");
  // A base URI that takes a long way to find, for many references.
  std::string nested = R"({"$id":"x:/","$ref":"#/$defs/e","$defs":{"e":)";
  nested += repeated(R"({"$id":"/)" + repeated("b/", 450) + R"(","not":)", 57);
  nested += R"({"$id":"/","allOf":[{"$id":"/q"})";
  for (int i = 0; i < 30'000; ++i) {
    nested += R"(,{"$ref":"/)" + std::to_string(i) + "/../q\"}";
  }
  pairs.emplace_back(nested + "]}" + repeated("}", 57) + "}}", "1");
  return pairs;
}

TEST(Violation, EndsSoonOnASmallStack) {
  onSmallStack([] {
    for (const auto& [schemaText, instanceText] : meanPairs()) {
      const JsonRef instance = parsed(instanceText);
      const JsonRef schema = parsed(schemaText);
      for (const Draft draft : {Draft::k7, Draft::k2020}) {
        Violation violation;
        EXPECT_FALSE(validate(instance.get(), schema.get(), &violation, draft))
            << schemaText.substr(0, 60) << ": " << violation.message;
        if (draft == Draft::k7) {
          EXPECT_EQ(violation.message, firstOfAll(instance.get(), schema.get(), draft));
        }
      }
    }
  });
}

}  // namespace
}  // namespace hearth::schema
