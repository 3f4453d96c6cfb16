// Documents: loading, rendering, copying, saving, dumping, checking; and how deep and wide they may
// be.
#include <gtest/gtest.h>
#include <pthread.h>

#include <clocale>
#include <cstdlib>
#include <memory>

#include "hearth/json_data.h"
#include "hearth/tree_map_object.h"
#include "json/json_ref.h"
#include "tests/support/captured_log.h"
#include "tests/support/temp_dir.h"

namespace {

using Handle = std::unique_ptr<TreeMapObject>;
using hearth::JsonRef;

std::string plain(json_object* value) {
  return json_object_to_json_string_ext(value, JSON_C_TO_STRING_PLAIN);
}

std::string nested(int levels) {
  return std::string(static_cast<std::size_t>(levels), '[') +
         std::string(static_cast<std::size_t>(levels), ']');
}

// An array in an array ... made in memory, where no parser limits it.
TreeMapObject* deep(int levels) {
  std::string path;
  for (int i = 1; i < levels; ++i) {
    path += "[0].";
  }
  auto* const handle = new TreeMapObject(true);
  handle->set((path + "[0]").c_str(), 1);
  return handle;
}

TEST(Documents, Load) {
  EXPECT_EQ(nullptr, JsonData::createObject(""));
  EXPECT_EQ(nullptr, JsonData::createObject("{"));
  EXPECT_EQ(nullptr, JsonData::createObject(nullptr));
  EXPECT_EQ("[1,2]", plain(Handle(JsonData::createObject("[1,2]"))->jobj));

  const TempDir dir;
  CapturedLog log({LOG_ERROR, LOG_WARNING, LOG_INFO});
  EXPECT_EQ(nullptr, JsonData::createObjectFromFile((dir / "missing").c_str()));
  EXPECT_EQ(nullptr, JsonData::createObjectFromFile(nullptr));
  EXPECT_EQ("{}", plain(Handle(JsonData::createObjectFromFile(dir.file("a", "{}").c_str()))->jobj));
  for (const std::string& text :
       {std::string("{"), std::string(), std::string(9, '\0'), nested(33)}) {
    const Handle broken(JsonData::createObjectFromFile(dir.file("b", text).c_str()));
    ASSERT_NE(nullptr, broken);
    EXPECT_EQ(nullptr, broken->jobj);
  }
  EXPECT_EQ("", log.text());
}

TEST(Documents, Render) {
  TreeMapObject handle(R"({"a":[1]})");
  EXPECT_STREQ("{\n  \"a\": [\n    1\n  ]\n}", JsonData::getJson(&handle));
  handle.error = 1;
  EXPECT_EQ(nullptr, JsonData::getJson(&handle));
  EXPECT_EQ(nullptr, JsonData::getJson(nullptr));
  EXPECT_EQ(nullptr, JsonData::getJson(Handle(new TreeMapObject).get()));
}

TEST(Documents, ACopyIsWhatRenderingAndParsingGives) {
  for (
      const char* const text :
      {R"({"a":[1,-2,null,true,"x\u0000y\u00e9\ud83d\ude00",1.50,1e300,18446744073709551615],"":{}})",
       "[]", "7", "0.1", R"("\u0001\/")", R"([-9223372036854775808,-0.0,NaN,-Infinity])"}) {
    SCOPED_TRACE(text);
    const JsonRef source(json_tokener_parse(text));
    const JsonRef copy(JsonData::cloneObject(source.get()));
    const JsonRef parsed(json_tokener_parse(json_object_to_json_string(source.get())));
    EXPECT_EQ(plain(parsed.get()), plain(copy.get()));
    EXPECT_EQ(json_object_get_type(parsed.get()), json_object_get_type(copy.get()));
    EXPECT_NE(source.get(), copy.get());
  }
  for (const char* const text : {"1.5", "01.5", "-0.5", "00.5", ".5", "1.", "1.5x", "1e5", "x"}) {
    const JsonRef source(json_object_new_double_s(1.5, text));
    EXPECT_EQ(plain(JsonRef(json_tokener_parse(text)).get()),
              plain(JsonRef(JsonData::cloneObject(source.get())).get()))
        << text;
  }
  // The backend's own format of numbers counts too: here it makes an integer.
  const JsonRef formatted(json_object_new_double(2.0 / 3));
  json_c_set_serialization_double_format("%.0f", JSON_C_OPTION_GLOBAL);
  const JsonRef copy(JsonData::cloneObject(formatted.get()));
  json_c_set_serialization_double_format(nullptr, JSON_C_OPTION_GLOBAL);
  EXPECT_EQ(json_type_int, json_object_get_type(copy.get()));
}

TEST(Documents, CloneSharesNothing) {
  auto document = std::make_unique<TreeMapObject>(R"({"a":{"b":[1]},"n":null})");
  const Handle part(document->clone("a"));
  const Handle whole(document->clone(nullptr));
  document->set("a.b.[0]", 2);
  CapturedLog log({LOG_ERROR});
  EXPECT_EQ(nullptr, document->clone("n"));
  EXPECT_EQ("ERROR: clone: fail to get object by path\n", log.text());
  document.reset();
  EXPECT_EQ(R"({"b":[1]})", plain(part->jobj));
  EXPECT_EQ(R"({"a":{"b":[1]},"n":null})", plain(whole->jobj));
}

TEST(Documents, Save) {
  constexpr char kSaved[] = "{\n  \"a\":[\n    1.50,\n    [\n    ]\n  ]\n}";
  const TempDir dir;
  TreeMapObject handle(R"({"a":[1.50,[]]})");
  TreeMapObject empty;
  {
    CapturedLog log({LOG_DEBUG});
    EXPECT_EQ(0, JsonData::saveObjectToFile((dir / "f").c_str(), &handle));
    EXPECT_TRUE(log.has("DEBUG: saveObjectToFile: object is saved\n"));
  }
  EXPECT_EQ(kSaved, dir.contentsOf("f"));
  const std::string missing = dir / "no/f";
  CapturedLog log({LOG_DEBUG});
  EXPECT_EQ(2, JsonData::saveObjectToFile(missing.c_str(), &handle));
  EXPECT_EQ(2, JsonData::saveObjectToFile((dir / "f").c_str(), &empty));
  EXPECT_EQ(2, JsonData::saveObjectToFile((dir / "f").c_str(), Handle(deep(33)).get()));
  EXPECT_EQ(2, JsonData::saveObjectToFile((dir / "f").c_str(), nullptr));
  EXPECT_EQ(2, JsonData::saveObjectToFile(nullptr, &handle));
  EXPECT_TRUE(log.has("failed to save object to file (" + missing + ") ret=-1\n"));
  EXPECT_EQ(kSaved, dir.contentsOf("f"));
}

TEST(Documents, Dump) {
  TreeMapObject handle(R"({"a":{"b":1}})");
  CapturedLog log({LOG_INFO, LOG_ERROR});
  handle.dump("");
  JsonData::dumpObject(&handle, "a.x");
  JsonData::dumpObject(&handle, nullptr);
  const std::string text = log.text();
  EXPECT_EQ(0U, text.find("INFO: Dump object content:\n"
                          "INFO: dumpObject: \ntype=4\n{\n  \"a\":{\n    \"b\":1\n  }\n}\n"));
  EXPECT_NE(std::string::npos, text.find("ERROR: dumpObject: wrong params obj="));
}

TEST(Documents, SchemasDecide) {
  const TempDir dir;
  const std::string good = dir.file("good", R"({"n":1})");
  const std::string bad = dir.file("bad", R"({"n":"x"})");
  const std::string schema = dir.file("schema", R"({"properties":{"n":{"type":"integer"}}})");
  const std::string broken = dir.file("broken", "{");
  const std::string none = dir / "none";
  struct {
    const std::string& instance;
    const std::string& schema;
    int files;
    int handle;
  } const cases[] = {
      {good, schema, 0, 0}, {bad, schema, 2, 2},  {good, none, 0, 0},
      {none, none, 0, 2},   {none, schema, 2, 2}, {good, broken, 2, 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.instance + " " + c.schema);
    const Handle handle(JsonData::createObjectFromFile(c.instance.c_str()));
    EXPECT_EQ(c.files, JsonData::validateFile(c.instance.c_str(), c.schema.c_str()));
    EXPECT_EQ(c.handle, JsonData::validateFile(handle.get(), c.schema.c_str()));
  }
  TreeMapObject handle(R"({"n":"x"})");
  CapturedLog log({LOG_ERROR, LOG_WARNING});
  EXPECT_EQ(0, JsonData::validateObject(&handle, "not JSON"));
  EXPECT_EQ(2, JsonData::validateObject(&handle, R"({"required":["m"]})"));
  EXPECT_EQ(0, JsonData::validateObject(&handle, R"({"required":["n"]})"));
  EXPECT_EQ(2, JsonData::validateObject(nullptr, "{}"));
  handle.error = 1;
  EXPECT_EQ(2, JsonData::validateObject(&handle, "{}"));
  EXPECT_EQ(0U, log.text().find("WARN: Invalid schema!\n"
                                "ERROR: validateObject: failed to validate jobj\n"));
}

TEST(Documents, NumbersIgnoreTheLocale) {
  const TempDir dir;
  const std::string make = "localedef -i de_DE -f UTF-8 " + (dir / "de_DE.UTF-8") + " 2>&1";
  setenv("LOCPATH", dir.path().c_str(), 1);
  if (std::system(make.c_str()) != 0 || std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
    GTEST_SKIP() << "needs localedef and the source of the locale de_DE";
  }
  unsetenv("LOCPATH");  // the C library leaks its copy of it whenever json-c makes a locale
  TreeMapObject handle(R"({"a":1.25})");
  handle.set("b", 2.5);
  EXPECT_EQ(0, JsonData::saveObjectToFile((dir / "f").c_str(), &handle));
  const Handle copy(handle.clone(nullptr));
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ("{\n  \"a\":1.25,\n  \"b\":2.5\n}", dir.contentsOf("f"));
  EXPECT_EQ(2.5, copy->get<double>("b"));
}

// Runs the work on a thread with the stack that the product's threads have.
void onSmallStack(void (*work)()) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 128 * 1024);
  pthread_t thread;
  const auto run = [](void* start) -> void* {
    reinterpret_cast<void (*)()>(start)();
    return nullptr;
  };
  ASSERT_EQ(0, pthread_create(&thread, &attributes, run, reinterpret_cast<void*>(work)));
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

TEST(DocumentLimits, DeepDocumentsNeedNoDeepStack) {
  onSmallStack([] {
    const TempDir dir;
    const std::string file = dir / "f";
    for (const int levels : {31, 32, 200, 300, 5000}) {
      SCOPED_TRACE(levels);
      const Handle handle(deep(levels));
      const bool parses = levels <= 31;
      EXPECT_EQ(parses ? 0 : 2, JsonData::saveObjectToFile(file.c_str(), handle.get()));
      EXPECT_EQ(parses, Handle(handle->clone(nullptr)) != nullptr);
      EXPECT_EQ(levels <= 256, JsonData::getJson(handle.get()) != nullptr);
      EXPECT_TRUE(handle->find("k", 1).empty());
      EXPECT_EQ(2, JsonData::validateObject(handle.get(), R"({"type":"object"})"));
      TreeMapObject other(false);
      other.set("a", handle.get());
      handle->dump("");
      handle->del("[0]");
    }
  });
}

TEST(DocumentLimits, WideDocuments) {
  onSmallStack([] {
    const TempDir dir;
    const std::string file = dir / "f";
    const std::string name(64 * 1024, 'n');
    TreeMapObject document(false);
    document.set(name.c_str(), std::string(1 << 20, 's').c_str());
    TreeMapObject array(true);
    for (int i = 0; i < 100000; ++i) {
      array.addArrayItem(i);
    }
    document.set("list", &array);
    EXPECT_EQ(0, JsonData::saveObjectToFile(file.c_str(), &document));
    const Handle loaded(JsonData::createObjectFromFile(file.c_str()));
    EXPECT_EQ(plain(document.jobj), plain(loaded->jobj));
    EXPECT_EQ(99999, loaded->get<int>("list.[99999]"));
    const Handle list(loaded->get("list"));
    EXPECT_EQ(99999, list->delArrayItem(0));
    EXPECT_EQ(plain(document.jobj), plain(Handle(document.clone(nullptr))->jobj));
  });
}

}  // namespace
