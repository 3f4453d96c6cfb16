// Runs the official JSON Schema test suite. HEARTH_SCHEMA_SUITE names the folder that holds its
// `tests`; without it there is nothing to run. A schema without $schema counts as its folder's
// draft.
#include <gtest/gtest.h>
#include <json-c/json.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "check.h"

namespace hearth::schema {
namespace {

namespace fs = std::filesystem;

struct Folder {
  const char* name;
  Draft draft;
};

void PrintTo(const Folder& folder, std::ostream* out) {
  *out << folder.name;
}

class SuiteTest : public testing::TestWithParam<Folder> {};

json_object* member(json_object* object, const char* name) {
  json_object* value = nullptr;
  json_object_object_get_ex(object, name, &value);
  return value;
}

const char* text(json_object* object, const char* name) {
  return json_object_get_string(member(object, name));
}

// These cases are left out, as docs/validator.md tells: documents that would have to be fetched,
// formats that are asserted by default up to 2019-09, and international names for an old PCRE2.
bool isLeftOut(Draft draft, const std::string& file, const std::string& group,
               const std::string& test) {
  // Files, and the starts of their groups' descriptions.
  static constexpr std::pair<const char*, const char*> kFetching[] = {
      {"refRemote.json", ""},
      {"vocabulary.json", "schema that uses custom metaschema"},
      {"optional/cross-draft.json", "refs to "},
      {"optional/format-assertion.json", "schema that uses custom metaschema"},
      {"dynamicRef.json", "strict-tree schema"},
      {"dynamicRef.json", "tests for implementation dynamic anchor"},
      {"dynamicRef.json", "$ref and $dynamicAnchor are independent of order"},
      {"dynamicRef.json", "$ref to $dynamicRef finds detached"},
  };
  for (const auto& [itsFile, start] : kFetching) {
    if (file == itsFile && group.rfind(start, 0) == 0) {
      return true;
    }
  }
  if (!knowsScripts() &&
      (file == "optional/format/hostname.json" || file.rfind("optional/format/idn-", 0) == 0)) {
    return true;
  }
  return draft < Draft::k2020 && file == "format.json" &&
         test.find("is only an annotation by default") != std::string::npos;
}

struct Score {
  int passed = 0;
  int all = 0;
};

// Formats are remarks in 2020-12; what they mean is tested as 2019-09 has it.
Draft draftToTest(const std::string& file, json_object* schema, Draft draft) {
  if (draft != Draft::k2020 || file.find("optional/format/") != 0) {
    return draft;
  }
  json_object_object_del(schema, "$schema");
  return Draft::k2019;
}

void runGroup(const std::string& file, json_object* group, Draft folder, Score& score) {
  const Draft draft = draftToTest(file, member(group, "schema"), folder);
  json_object* const tests = member(group, "tests");
  for (std::size_t i = 0; i < json_object_array_length(tests); ++i) {
    json_object* const test = json_object_array_get_idx(tests, i);
    if (isLeftOut(draft, file, text(group, "description"), text(test, "description"))) {
      continue;
    }
    Violation violation;
    const bool valid = validate(member(test, "data"), member(group, "schema"), &violation, draft);
    const bool expected = json_object_get_boolean(member(test, "valid"));
    ++score.all;
    score.passed += valid == expected ? 1 : 0;
    EXPECT_EQ(expected, valid) << file << ": " << text(group, "description") << ": "
                               << text(test, "description") << "\n  schema "
                               << json_object_to_json_string(member(group, "schema")) << "\n  data "
                               << json_object_to_json_string(member(test, "data")) << "\n  got "
                               << violation.schemaLocation << " " << violation.message;
    EXPECT_EQ(violation.message.empty(), valid) << file << ": " << text(test, "description");
    EXPECT_EQ(violation.message, firstOfAll(member(test, "data"), member(group, "schema"), draft))
        << file << ": " << text(test, "description");
  }
}

TEST_P(SuiteTest, Passes) {
  const char* const root = getenv("HEARTH_SCHEMA_SUITE");
  if (root == nullptr) {
    GTEST_SKIP() << "HEARTH_SCHEMA_SUITE is not set";
  }
  const fs::path folder = fs::path(root) / "tests" / GetParam().name;
  if (!fs::exists(folder)) {
    GTEST_SKIP() << folder << " is not in the suite";
  }
  Score required, optional;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".json") {
      const std::string file = fs::relative(entry.path(), folder).string();
      const JsonRef groups(json_object_from_file(entry.path().c_str()));
      ASSERT_TRUE(groups) << entry.path();
      for (std::size_t i = 0; i < json_object_array_length(groups.get()); ++i) {
        runGroup(file, json_object_array_get_idx(groups.get(), i), GetParam().draft,
                 file.find("optional/") == 0 ? optional : required);
      }
    }
  }
  printf("%s: required %d of %d, optional %d of %d\n", GetParam().name, required.passed,
         required.all, optional.passed, optional.all);
}

INSTANTIATE_TEST_SUITE_P(Drafts, SuiteTest,
                         testing::Values(Folder{"draft4", Draft::k4}, Folder{"draft6", Draft::k6},
                                         Folder{"draft7", Draft::k7},
                                         Folder{"draft2019-09", Draft::k2019},
                                         Folder{"draft2020-12", Draft::k2020}));

}  // namespace
}  // namespace hearth::schema
