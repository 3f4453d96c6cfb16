// Search by value, and the typed comparison under it.
#include "hearth/json_data.h"
#include "tests/support/captured_log.h"

namespace {

// Answers the text of the objects found. The document is gone by then.
template <typename T>
std::string found(const char* text, const char* key, T value) {
  std::list<TreeMapObject*> handles;
  {
    const TreeMapObject document(text);
    handles = document.find(key, value);
  }
  std::string all;
  for (TreeMapObject* const handle : handles) {
    EXPECT_EQ(nullptr, handle->jobj_parent);
    EXPECT_STREQ("", handle->key_obj);
    all += plain(*handle);
    delete handle;
  }
  return all;
}

TEST(Search, FindsInDocumentOrder) {
  EXPECT_EQ(R"({"id":1,"n":"a"}{"id":1,"n":"c"})",
            found(R"({"rules":[{"id":1,"n":"a"},{"id":2},[{"id":1,"n":"c"}]]})", "id", 1));
  EXPECT_EQ(R"({"id":5,"b":{"id":5}}{"id":5})", found(R"({"a":{"id":5,"b":{"id":5}}})", "id", 5));
  EXPECT_EQ(R"({"id":5}{"b":{"id":5},"id":5})", found(R"({"a":{"b":{"id":5},"id":5}})", "id", 5U));
  EXPECT_EQ(R"({"id":7})", found(R"({"id":{"id":7}})", "id", 7));
}

TEST(Search, TypesMustAgree) {
  const char* const document = R"([{"k":1},{"k":1.0},{"k":true},{"k":"1"},{"k":null},{"k":-1}])";
  EXPECT_EQ(R"({"k":1})", found(document, "k", 1));
  EXPECT_EQ(R"({"k":1.0})", found(document, "k", 1.0));
  EXPECT_EQ(R"({"k":true})", found(document, "k", true));
  EXPECT_EQ(R"({"k":"1"})", found(document, "k", "1"));
  EXPECT_EQ(R"({"k":-1})", found(document, "k", 4294967295U));
}

TEST(Search, SaysWhatItCannotDo) {
  constexpr char kEmptyKey[] = "ERROR: Key is null or empty\n";
  constexpr char kNoResult[] = "ERROR: Some error happened, cannot return result\n";
  constexpr char kWrongRoot[] =
      "ERROR: parent object is not object neither array\n"
      "ERROR: Some error happened, cannot return result\n";
  constexpr char kItems[] =
      "WARN: findInArray: array items have primary typeWARN: Found null object in the array\n";
  const struct {
    const char* document;
    const char* key;
    std::string linesForInt;
    std::string linesForText;
  } rows[] = {
      {"{}", "", kEmptyKey, kEmptyKey},
      {"{}", nullptr, kEmptyKey, kEmptyKey},
      {"{}", "k", "", kNoResult},
      {"{", "k", "", kNoResult},
      {"\"s\"", "k", kWrongRoot, kWrongRoot},
      {"[7,null]", "k", kItems, std::string(kItems) + kNoResult},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.document);
    const TreeMapObject document(row.document);
    CapturedLog log({LOG_ERROR, LOG_WARNING});
    EXPECT_TRUE(document.find(row.key, 1).empty());
    Logger::print(LOG_ERROR, LOG_GROUP_UTIL, "and for a text\n");
    EXPECT_TRUE(document.find(row.key, "x").empty());
    EXPECT_EQ(row.linesForInt + "ERROR: and for a text\n" + row.linesForText, log.text());
  }
  const TreeMapObject document("{}");
  EXPECT_TRUE(document.find("k", static_cast<const char*>(nullptr)).empty());
  EXPECT_TRUE(document.find("", 1U).empty());
  EXPECT_TRUE(document.find("", 0.5).empty());
  EXPECT_TRUE(document.find(nullptr, true).empty());
  std::list<TreeMapObject*> none;
  EXPECT_EQ(0, document.findInObject(none, "k", nullptr, document.jobj));
  EXPECT_EQ(0, document.findInArray(none, "k", document.jobj, document.jobj));
}

TEST(Comparison, IsTyped) {
  const struct {
    const char* src;
    const char* dst;
    int isEqual;
    const char* line;
  } rows[] = {
      {"\"a\"", "\"a\"", 1, "DEBUG: compareObjVal: srcVal= a dstVal= a\n"},
      {"\"a\"", "\"A\"", 0, "DEBUG: compareObjVal: srcVal= a dstVal= A\n"},
      {"3", "3", 1, "DEBUG: compareObjVal: srcVal= 3 dstVal= 3\n"},
      {"true", "false", 0, "DEBUG: compareObjVal: srcVal= 1 dstVal= 0\n"},
      {"0.5", "0.5", 1, "DEBUG: compareObjVal: srcVal= 0.500000 dstVal= 0.500000\n"},
      {"0.5", "0.25", 0, "DEBUG: compareObjVal: srcVal= 0.500000 dstVal= 0.250000\n"},
      {"3", "3.0", 0, "DEBUG: JSON type is different\n"},
      {"null", "null", 0, "DEBUG: JSON type is different\n"},
      {"{}", "{\"a\":1}", 1, "WARN: JSON type for the comparison MUST be primary types\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.src << " " << row.dst);
    const hearth::JsonRef src = parse(row.src);
    const hearth::JsonRef dst = parse(row.dst);
    CapturedLog log;
    EXPECT_EQ(row.isEqual, JsonData::compareObjVal(src.get(), json_object_get_type(src.get()),
                                                   dst.get(), json_object_get_type(dst.get())));
    EXPECT_EQ(row.line, log.text());
  }
}

}  // namespace
