// Handles: ownership, typed access by path, and the lines of each type.
#include <climits>
#include <sstream>
#include <tuple>

#include "hearth/json_data.h"
#include "tests/support/captured_log.h"
#include "tests/support/references.h"

namespace {

TEST(Handle, OwnsWhatItsConstructorSays) {
  EXPECT_EQ(nullptr, TreeMapObject().jobj);
  EXPECT_EQ("[]", plain(TreeMapObject(true)));
  EXPECT_EQ("{}", plain(TreeMapObject(false)));
  EXPECT_EQ("[1]", plain(TreeMapObject("[1]")));
  EXPECT_EQ(nullptr, TreeMapObject("{").jobj);
  EXPECT_EQ(nullptr, TreeMapObject(static_cast<const char*>(nullptr)).jobj);
  json_object* const value = json_object_new_int(1);
  {
    TreeMapObject handle(json_object_get(value));
    EXPECT_EQ(value, handle.jobj);
    EXPECT_EQ(nullptr, handle.jobj_parent);
    EXPECT_STREQ("", handle.key_obj);
    EXPECT_EQ(0, handle.error);
  }
  EXPECT_TRUE(wasLastReference(value));
}

TEST(Handle, ReleasesOrIgnores) {
  auto document = std::make_unique<TreeMapObject>(R"({"a":{"b":1}})");
  Handle borrowed(document->get("a"));
  EXPECT_EQ(
      "DEBUG: ~TreeMapObject: this=PTR\nDEBUG:      ignore jobj=PTR jobj_parent=PTR key_obj=a\n"
      "DEBUG: ~TreeMapObject: this=PTR\nDEBUG:      release jobj=PTR\n",
      linesOf([&] { borrowed.reset(), document.reset(); }, {LOG_DEBUG}));
}

// The answers and lines of the two typed reads of one path.
struct ReadRow {
  const char* path;
  const char* plainRead;
  const char* plainLine;
  const char* checkedRead;  // "-" where it answers false
  const char* checkedLine;
};

template <typename T>
std::string show(T value) {
  return (std::ostringstream() << std::boolalpha << value).str();
}
template <>
std::string show(const char* value) {
  return value != nullptr ? value : "null";
}

template <typename T>
void expectReads(std::initializer_list<ReadRow> rows, T untouched) {
  const TreeMapObject document(
      R"({"i":7,"d":2.9,"t":true,"s":"12","n":null,"o":{"x":1},"big":99999999999})");
  for (const ReadRow& row : rows) {
    SCOPED_TRACE(row.path);
    const auto read = [&] { EXPECT_EQ(row.plainRead, show(document.get<T>(row.path))); };
    const std::string lines = linesOf(read, {LOG_WARNING, LOG_ERROR, LOG_DEBUG});
    EXPECT_NE(std::string::npos, lines.find(row.plainLine)) << lines;
    CapturedLog log({LOG_WARNING, LOG_ERROR});
    T out = untouched;
    const bool isRead = document.get_ex(row.path, out);
    EXPECT_EQ(row.checkedRead, isRead ? show(out) : "-");
    EXPECT_EQ(row.checkedLine, log.text());
    if (!isRead) {
      EXPECT_EQ((std::is_same<T, const char*>::value ? T() : untouched), out);
    }
  }
}

TEST(Handle, ReadsEachType) {
  expectReads<int>(
      {{"i", "7", "", "7", ""},
       {"d", "2", "", "2", ""},
       {"big", "2147483647", "", "2147483647", ""},
       {"s", "12", "WARN: object 's' is not number!\n", "-", "WARN: object 's' is not number!\n"},
       {"n", "0", "DEBUG: object 'n' is not available, assign default int value as 0\n", "-",
        "ERROR: Cannot get integer value for object n due to the attribute is NULL\n"}},
      -5);
  expectReads<double>(
      {{"i", "7", "", "7", ""},
       {"d", "2.9", "", "2.9", ""},
       {"t", "1", "WARN: object 't' is not number!\n", "-", "WARN: object 't' is not number!\n"},
       {"x.y", "0", "DEBUG: object 'x.y' is not available, assign default double value as 0.0\n",
        "-", "ERROR: Cannot get double value for object x.y due to the attribute is NULL\n"}},
      -5.5);
  expectReads<bool>(
      {{"t", "true", "", "true", ""},
       {"i", "true", "WARN: object 'i' is not boolean!\n", "-",
        "WARN: object 'i' is not boolean!\n"},
       {"q", "false", "DEBUG: object 'q' is not available, assign default bool value as false\n",
        "-", "ERROR: Cannot get boolean value for object q due to the attribute is NULL\n"}},
      true);
  expectReads<const char*>(
      {{"s", "12", "", "12", ""},
       {"i", "7", "WARN: object 'i' is not string!\n", "-", "WARN: object 'i' is not string!\n"},
       {"q", "null", "DEBUG: object 'q' is not available, assign default string value as NULL\n",
        "-", "ERROR: Cannot get string value for object q due to the attribute is NULL\n"}},
      "untouched");
}

TEST(Handle, WritesEachType) {
  TreeMapObject document(false);
  document.set("i", -3);
  document.set("u", UINT_MAX);
  document.set("d", 0.5);
  document.set("b", true);
  document.set("s", "text");
  EXPECT_EQ(R"({"i":-3,"u":-1,"d":0.5,"b":true,"s":"text"})", plain(document));
  const std::string before = plain(document);
  CapturedLog log({LOG_ERROR});
  document.set("s", static_cast<const char*>(nullptr));
  document.set("i.x", 1);
  document.set("i.x", 1U);
  document.set("i.x", 1.0);
  document.set("i.x", false);
  document.set("i.x", "x");
  document.set("i.x", static_cast<TreeMapObject*>(nullptr));
  document.set("i.x", &document);
  EXPECT_EQ(before, plain(document));
  std::string lines = log.text();
  for (std::size_t at; (at = lines.find("ERROR: JsonData")) != std::string::npos;) {
    lines.erase(at, lines.find('\n', at) + 1 - at);
  }
  EXPECT_EQ(
      "ERROR: TreeMapObject::setting NULL for string, ignore\n"
      "ERROR: TreeMapObject::set: fail to set integer value to i.x\n"
      "ERROR: TreeMapObject::set: fail to set integer value to i.x\n"
      "ERROR: TreeMapObject::set: fail to set double value to i.x\n"
      "ERROR: TreeMapObject::set: fail to set boolean value to i.x\n"
      "ERROR: TreeMapObject::set: fail to set string value to i.x\n"
      "ERROR: TreeMapObject::set: obj=null\n"
      "ERROR: TreeMapObject::set: fail to set object value to i.x\n",
      lines);
}

TEST(Handle, EmptyHandlesAreUsable) {
  TreeMapObject empty;
  EXPECT_EQ(0, empty.get<int>("a"));
  EXPECT_EQ(nullptr, empty.get("a"));
  empty.set("a", 1);
  empty.del("a");
  EXPECT_EQ(nullptr, empty.jobj);
  TreeMapObject document(false);
  EXPECT_EQ(0, document.get<int>(nullptr));
  document.set(nullptr, 1);
  document.del(nullptr);
  EXPECT_EQ(nullptr, document.get(static_cast<const char*>(nullptr)));
  EXPECT_EQ("{}", plain(document));
}

TEST(Handle, SubHandlesBorrowAndWholeOnesOwn) {
  const std::string longName(40, 'k');
  auto document =
      std::make_unique<TreeMapObject>(("{\"a\":[[1],{}],\"" + longName + "\":{}}").c_str());
  const Handle element(document->get("a.[ 1 ]"));
  EXPECT_STREQ("[ 1 ]", element->key_obj);
  const Handle container(document->get("a"));
  EXPECT_EQ(container->jobj, element->jobj_parent);
  const Handle member(document->get(longName.c_str()));
  EXPECT_EQ(longName.substr(0, 31), member->key_obj);
  EXPECT_EQ(document->jobj, member->jobj_parent);
  element->set("x", 1);
  EXPECT_EQ(1, document->get<int>("a.[1].x"));
  const Handle whole(document->get(""));
  EXPECT_EQ(nullptr, whole->jobj_parent);
  document.reset();
  EXPECT_EQ(1, whole->get<int>("a.[1].x"));
}

TEST(Handle, SharesWhatIsSet) {
  TreeMapObject document(false);
  {
    TreeMapObject part(R"({"x":1})");
    document.set("a.b", &part);
    part.set("x", 2);
    EXPECT_STREQ("", document.key_obj);
    EXPECT_STREQ("", part.key_obj);
  }
  EXPECT_EQ(R"({"a":{"b":{"x":2}}})", plain(document));
}

TEST(Handle, DeletesMembersAndElements) {
  TreeMapObject document(R"({"a":{"":1,"b":[1,2,3]},"n":null})");
  for (const char* const path : {"a.b.[1]", "a.b.[9]", "a..", "n", "x.y", "", "a.b.[0].z"}) {
    document.del(path);
  }
  EXPECT_EQ(R"({"a":{"b":[1,3]},"n":null})", plain(document));
  document.del("a");
  EXPECT_EQ(R"({"n":null})", plain(document));
}

// An index without digits removes nothing, though reading takes it for 0.
TEST(Handle, RemovesOnlyByAnIndexWithDigits) {
  constexpr char kLeftover[] = "EXCEPTION: BE_StrTo: something unexpected happened";
  const std::string steps =
      "DEBUG: getJObj: Parse: idx=0 key=l isEnd=false\n"
      "DEBUG: getJObj: continue search next key\n"
      "DEBUG: getJObj: Parse: idx=1 key=TOKEN isEnd=true\n";
  const std::string found = "INFO: getJObj: FOUND parent=PTR, key=TOKEN\n";
  const std::string wrong = "ERROR: Wrong array index TOKEN - size:";
  const std::tuple<const char*, std::string, const char*> rows[] = {
      {"[x1]", kLeftover + found + wrong + "4\n", "[[1],2]"},
      {"[+1", found + wrong + "3\n", "[[1],2]"},
      {"[+]", found + wrong + "3\n", "[[1],2]"},
      {"[ - ]", found + wrong + "5\n", "[[1],2]"},
      {"[ ]", wrong + "3\n" + found, "[[1],2]"},
      {"[ +1 ]", found, "[[1]]"},
      {"[0y]", kLeftover + found, "[2]"},
  };
  for (const auto& [token, lines, after] : rows) {
    SCOPED_TRACE(token);
    TreeMapObject document(R"({"l":[[1],2]})");
    const std::string path = std::string("l.") + token;
    EXPECT_EQ(replaced(steps + lines, "TOKEN", token),
              linesOf([&] { document.del(path.c_str()); }));
    EXPECT_EQ(after, plain(JsonData::getJObj(document.jobj, "l")));
  }
}

}  // namespace
