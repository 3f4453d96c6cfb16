// Documents: loaded, rendered, copied, saved, dumped, validated; and how deep and wide they may be.
#include <clocale>
#include <cstring>

#include "hearth/json_data.h"
#include "tests/json/nested.h"
#include "tests/support/captured_log.h"
#include "tests/support/scratch.h"

namespace {

using hearth::JsonRef;
using Documents = Scratch;

TEST_F(Documents, Load) {
  EXPECT_EQ(nullptr, JsonData::createObject(""));
  EXPECT_EQ(nullptr, JsonData::createObject("{"));
  EXPECT_EQ(nullptr, JsonData::createObject("null"));
  EXPECT_EQ(nullptr, JsonData::createObject(nullptr));
  EXPECT_EQ("[1,2]", plain(*Handle(JsonData::createObject("[1,2]"))));
  CapturedLog log({LOG_ERROR, LOG_WARNING, LOG_INFO});
  EXPECT_EQ(nullptr, JsonData::createObjectFromFile("missing"));
  EXPECT_EQ(nullptr, JsonData::createObjectFromFile(nullptr));
  putText("file", "{}");
  EXPECT_EQ("{}", plain(*Handle(JsonData::createObjectFromFile("file"))));
  for (const std::string& text : {std::string("{"), std::string(), std::string(9, '\0')}) {
    putText("file", text);
    const Handle broken(JsonData::createObjectFromFile("file"));
    ASSERT_NE(nullptr, broken);
    EXPECT_EQ(nullptr, broken->jobj);
  }
  EXPECT_EQ("", log.text());
}

TEST_F(Documents, Render) {
  TreeMapObject handle(R"({"a":[1]})");
  EXPECT_STREQ("{\n  \"a\": [\n    1\n  ]\n}", JsonData::getJson(&handle));
  handle.error = 1;
  EXPECT_EQ(nullptr, JsonData::getJson(&handle));
  EXPECT_EQ(nullptr, JsonData::getJson(nullptr));
  EXPECT_EQ(nullptr, JsonData::getJson(Handle(new TreeMapObject).get()));
}

TEST_F(Documents, ACopyIsWhatRenderingAndParsingGives) {
  for (
      const char* const text :
      {R"({"a":[1,-2,null,true,"x\u0000y\u00e9\ud83d\ude00",1.50,1e300,18446744073709551615],"":{}})",
       "[]", "7", "0.1", R"("\u0001\/")", R"([-9223372036854775808,-0.0,NaN,-Infinity])",
       "[18446744073709551615,9223372036854775808,9223372036854775807,-7]"}) {
    SCOPED_TRACE(text);
    const JsonRef source = parse(text);
    const JsonRef copy(JsonData::cloneObject(source.get()));
    const JsonRef parsed = parse(json_object_to_json_string(source.get()));
    EXPECT_EQ(plain(parsed.get()), plain(copy.get()));
    EXPECT_EQ(json_object_get_type(parsed.get()), json_object_get_type(copy.get()));
    EXPECT_NE(source.get(), copy.get());
  }
  for (const char* const text : {"1.5", "01.5", "-0.5", "00.5", ".5", "1.", "1.5x", "1e5", "x"}) {
    const JsonRef source(json_object_new_double_s(1.5, text));
    EXPECT_EQ(plain(parse(text).get()), plain(JsonRef(JsonData::cloneObject(source.get())).get()))
        << text;
  }
  // The backend's own format of numbers counts too: here it makes an integer.
  const JsonRef formatted(json_object_new_double(2.0 / 3));
  json_c_set_serialization_double_format("%.0f", JSON_C_OPTION_GLOBAL);
  const JsonRef copy(JsonData::cloneObject(formatted.get()));
  json_c_set_serialization_double_format(nullptr, JSON_C_OPTION_GLOBAL);
  EXPECT_EQ(json_type_int, json_object_get_type(copy.get()));
}

TEST_F(Documents, ACopyTakesTheTextOfSerializers) {
  const auto append = [](json_object* value, printbuf* text, int, int) {
    const auto* const own = static_cast<const char*>(json_object_get_userdata(value));
    return printbuf_memappend(text, own, static_cast<int>(std::strlen(own)));
  };
  constexpr char kSteps[] =
      "DEBUG: cloneObject: clone json object PTR\n"
      "DEBUG: cloneObject: parser json to create new object\n";
  constexpr char kNoText[] =
      "DEBUG: cloneObject: clone json object PTR\n"
      "ERROR: cloneObject: fail to get json string\n"
      "ERROR: cloneObject: fail to create new object\n";
  const std::string noValue =
      std::string(kSteps) + "ERROR: cloneObject: fail to create new object\n";
  const struct {
    const char* text;    // what the serializer writes
    const char* copied;  // the copy of the value
    std::string lines;
    const char* copiedInside;  // the copy of an array that has only the value
  } rows[] = {
      {"[1,2]", "[1,2]", kSteps, "[[1,2]]"}, {"1,2", "1", kSteps, "[1,2]"},
      {"1e2", "1e2", kSteps, "[1e2]"},       {"null", "null", noValue, "[null]"},
      {"x", "null", noValue, "null"},        {"", "null", kNoText, "[]"},
  };
  for (const char* const type : {"true", "7", "0.5", "\"s\"", "{\"a\":1}", "[1]"}) {
    for (const auto& row : rows) {
      SCOPED_TRACE(testing::Message() << type << " " << row.text);
      const JsonRef value = parse(type);
      const JsonRef array = parse("[]");
      json_object_set_serializer(value.get(), append, const_cast<char*>(row.text), nullptr);
      json_object_array_add(array.get(), json_object_get(value.get()));
      JsonRef copy;
      EXPECT_EQ(row.lines, linesOf([&] { copy.reset(JsonData::cloneObject(value.get())); }));
      EXPECT_EQ(row.copied, plain(copy.get()));
      EXPECT_EQ(row.copiedInside, plain(JsonRef(JsonData::cloneObject(array.get())).get()));
      // json-c 0.19 takes the user data of a container that it frees for another container.
      json_object_set_serializer(value.get(), nullptr, nullptr, nullptr);
    }
  }
  EXPECT_EQ("ERROR: cloneObject: bad pobj param jobj=(nil)\n",
            linesOf([] { EXPECT_EQ(nullptr, JsonData::cloneObject(nullptr)); }));
}

TEST_F(Documents, CloneSharesNothing) {
  auto document = std::make_unique<TreeMapObject>(R"({"a":{"b":[1]},"n":null})");
  const Handle part(document->clone("a"));
  const Handle whole(document->clone(nullptr));
  document->set("a.b.[0]", 2);
  EXPECT_EQ("ERROR: clone: fail to get object by path\n",
            linesOf([&] { EXPECT_EQ(nullptr, document->clone("n")); }, {LOG_ERROR}));
  document.reset();
  EXPECT_EQ(R"({"b":[1]})", plain(*part));
  EXPECT_EQ(R"({"a":{"b":[1]},"n":null})", plain(*whole));
}

TEST_F(Documents, Save) {
  constexpr char kSaved[] = "{\n  \"a\":[\n    1.50,\n    [\n      2\n    ]\n  ]\n}";
  TreeMapObject handle(R"({"a":[1.50,[2]]})");
  TreeMapObject empty;
  CapturedLog log({LOG_DEBUG});
  EXPECT_EQ(0, JsonData::saveObjectToFile("f", &handle));
  EXPECT_EQ(kSaved, textOf("f"));
  EXPECT_EQ(2, JsonData::saveObjectToFile("no/f", &handle));
  EXPECT_EQ(2, JsonData::saveObjectToFile("f", &empty));
  EXPECT_EQ(2, JsonData::saveObjectToFile("f", nullptr));
  EXPECT_EQ(2, JsonData::saveObjectToFile(nullptr, &handle));
  EXPECT_TRUE(log.has("DEBUG: saveObjectToFile: object is saved\n"));
  EXPECT_TRUE(log.has("failed to save object to file (no/f) ret=-1\n"));
  EXPECT_EQ(kSaved, textOf("f"));
}

TEST_F(Documents, Dump) {
  TreeMapObject handle(R"({"a":{"b":1}})");
  CapturedLog log({LOG_INFO, LOG_ERROR});
  handle.dump("");
  JsonData::dumpObject(&handle, "a.x");
  JsonData::dumpObject(&handle, nullptr);
  EXPECT_EQ(0U, log.text().find("INFO: Dump object content:\n"
                                "INFO: dumpObject: \ntype=4\n{\n  \"a\":{\n    \"b\":1\n  }\n}\n"));
  EXPECT_TRUE(log.has("ERROR: dumpObject: wrong params obj="));
}

TEST_F(Documents, SchemasDecide) {
  putText("good", R"({"n":1})");
  putText("bad", R"({"n":"x"})");
  putText("schema", R"({"properties":{"n":{"type":"integer"}}})");
  putText("broken", "{");
  const std::string noFile = "validateFile: file is not exist";
  const std::string passes = "WARN: " + noFile + "\nnone. No validation is required\n";
  const std::string passesWithNotice =
      "WARN: " + noFile + ": none. The validation is passed with notice\n";
  const std::string noInstance = "ERROR: " + noFile + "\nnone\n";
  const std::string noHandle = "ERROR: validateFile: bad pobj param obj=";
  const std::string broken = "ERROR: validateFile: failed to parse schema file broken\n";
  const struct {
    const char* instance;
    const char* schema;
    int ofFiles;  // the answer for the two files, and its lines
    std::string linesOfFiles;
    int ofHandle;  // the same for a handle on the instance
    std::string linesOfHandle;
  } rows[] = {
      {"good", "schema", 0, "", 0, ""},
      {"bad", "schema", 2, "", 2, ""},
      {"good", "none", 0, passes, 0, passesWithNotice},
      {"none", "none", 0, passes, 2, noHandle + "(nil)\n"},
      {"none", "schema", 2, noInstance, 2, noHandle + "(nil)\n"},
      {"bad", "broken", 2, "", 2, broken},
      {"broken", "schema", 2, "", 2, noHandle + "PTR\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.instance << " " << row.schema);
    const Handle handle(JsonData::createObjectFromFile(row.instance));
    int result = -1;
    EXPECT_EQ(row.linesOfFiles,
              linesOf([&] { result = JsonData::validateFile(row.instance, row.schema); }));
    EXPECT_EQ(row.ofFiles, result);
    const std::string lines =
        linesOf([&] { result = JsonData::validateFile(handle.get(), row.schema); });
    const bool isChecked = handle != nullptr && handle->jobj != nullptr;
    const std::string first =
        isChecked ? std::string("DEBUG: validateFile: validate file ") + row.schema + "\n" : "";
    EXPECT_EQ(first + row.linesOfHandle, lines);
    EXPECT_EQ(row.ofHandle, result);
  }
  TreeMapObject handle(R"({"n":"x"})");
  CapturedLog log({LOG_ERROR, LOG_WARNING});
  EXPECT_EQ(0, JsonData::validateObject(&handle, "not JSON"));
  EXPECT_EQ(2, JsonData::validateObject(&handle, R"({"required":["m"]})"));
  EXPECT_EQ(0, JsonData::validateObject(&handle, R"({"required":["n"]})"));
  EXPECT_EQ(2, JsonData::validateObject(nullptr, "{}"));
  handle.error = 1;
  EXPECT_EQ(2, JsonData::validateObject(&handle, "{}"));
  EXPECT_EQ(
      "WARN: Invalid schema!\n"
      "ERROR: validateObject: failed to validate jobj\n"
      "ERROR: validateObject: bad pobj param obj=(nil)\n"
      "ERROR: validateObject: bad pobj param error=1 jobj=PTR\n",
      log.text());
}

TEST_F(Documents, NumbersIgnoreTheLocale) {
  setenv("LOCPATH", folder_.path().c_str(), 1);
  if (std::system("localedef -i de_DE -f UTF-8 ./de_DE.UTF-8 2>&1") != 0 ||
      std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
    GTEST_SKIP() << "needs localedef and the source of the locale de_DE";
  }
  unsetenv("LOCPATH");  // the C library leaks its copy of it whenever json-c makes a locale
  TreeMapObject handle(R"({"a":1.25})");
  handle.set("b", 2.5);
  EXPECT_EQ(0, JsonData::saveObjectToFile("f", &handle));
  const Handle copy(handle.clone(nullptr));
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ("{\n  \"a\":1.25,\n  \"b\":2.5\n}", textOf("f"));
  EXPECT_EQ(2.5, copy->get<double>("b"));
}

TEST_F(Documents, MayBeDeep) {
  onSmallStack([] {
    for (const int levels : {31, 32, 256, 257, 100000}) {
      SCOPED_TRACE(levels);
      const std::vector<JsonRef> containers = nested(levels);
      TreeMapObject handle(json_object_get(containers.front().get()));
      const bool parses = levels <= 31;
      EXPECT_EQ(parses ? 0 : 2, JsonData::saveObjectToFile("f", &handle));
      const Handle saved(JsonData::createObjectFromFile("f"));
      ASSERT_TRUE(saved != nullptr && saved->jobj != nullptr) << "is read back";
      EXPECT_EQ(parses ? ""
                       : "ERROR: cloneObject: fail to create new object\n"
                         "ERROR: clone: fail to clone object\n",
                linesOf([&] { delete handle.clone(nullptr); }, {LOG_ERROR}));
      EXPECT_EQ(levels <= 256, JsonData::getJson(&handle) != nullptr);
      const auto dump = [&] { handle.dump(""); };
      EXPECT_EQ(levels > 256, linesOf(dump).find("\n(null)\n") != std::string::npos);
      EXPECT_EQ(2, JsonData::validateObject(&handle, R"({"type":"string"})"));
      TreeMapObject other(false);
      other.set("a", &handle);
      EXPECT_EQ(handle.jobj, JsonData::getJObj(other.jobj, "a"));
      const std::list<TreeMapObject*> found = handle.find("k", 1);
      ASSERT_EQ(1U, found.size());
      EXPECT_EQ(containers.back().get(), Handle(found.front())->jobj);
      // Members behind each container on the way down are found too.
      for (int i = levels - 1; i >= 0; i -= 2) {
        json_object_object_add(containers[static_cast<std::size_t>(i)].get(), "z",
                               json_object_new_int(2));
      }
      const std::list<TreeMapObject*> behind = handle.find("z", 2);
      EXPECT_EQ(static_cast<std::size_t>(levels + 1) / 2, behind.size());
      for (TreeMapObject* const each : behind) {
        delete each;
      }
    }
  });
}

TEST_F(Documents, MayBeWide) {
  onSmallStack([] {
    TreeMapObject document(false);
    document.set(std::string(64 * 1024, 'n').c_str(), std::string(1 << 20, 's').c_str());
    TreeMapObject array(true);
    for (int i = 0; i < 100000; ++i) {
      array.addArrayItem(i);
    }
    document.set("list", &array);
    EXPECT_EQ(0, JsonData::saveObjectToFile("f", &document));
    const Handle loaded(JsonData::createObjectFromFile("f"));
    EXPECT_EQ(plain(document), plain(*loaded));
    EXPECT_EQ(99999, loaded->get<int>("list.[99999]"));
    const Handle list(loaded->get("list"));
    EXPECT_EQ(99999, list->delArrayItem(0));
    EXPECT_EQ(plain(document), plain(*Handle(document.clone(nullptr))));
  });
}

}  // namespace
