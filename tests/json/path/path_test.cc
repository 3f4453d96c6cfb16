// The path language: every rule by example, and every short path against the model.
#include <tuple>

#include "hearth/json_data.h"
#include "tests/json/nested.h"
#include "tests/json/path/path_check.h"
#include "tests/support/captured_log.h"
#include "tests/support/scratch.h"

namespace {

using hearth::JsonRef;

// Calls check with every path of at most `longest` characters of the alphabet.
template <typename Check>
void forEveryPath(const std::string& alphabet, std::size_t longest, Check check) {
  std::vector<std::string> paths = {""};
  for (std::size_t i = 0; i < paths.size(); ++i) {
    check(paths[i]);
    if (paths[i].size() < longest) {
      for (const char c : alphabet) {
        paths.push_back(paths[i] + c);
      }
    }
  }
}

const char* const kDocuments[] = {"{}",
                                  "[]",
                                  "7",
                                  R"({"a":{"a":[1,{"a":2}],"":3},"":{"":[null,4]},"[":5,"-":null})",
                                  R"([[1,[2]],{"a":[{},[]]},null])",
                                  R"({"a":[[],[0,[1]]],"0":"s","1":{"]":{"a":6}}})"};

TEST(PathModel, EveryShortPathReadsAndWritesAsTheModelDoes) {
  std::string differences;
  printed([&] {
    for (const char* const text : kDocuments) {
      const JsonRef root = parse(text);
      forEveryPath("a.[01]-", 5, [&](const std::string& path) {
        const std::string difference =
            readingDiffers(root.get(), path) + writingDiffers(parse(text).release(), path);
        if (!difference.empty()) {
          differences += std::string(text) + " '" + path + "': " + difference + "\n";
        }
      });
    }
  });
  EXPECT_EQ("", differences);
}

constexpr char kLeftover[] = "EXCEPTION: BE_StrTo: something unexpected happened";

// The rules that short paths do not reach: blanks, signs, leftovers, the ends of numbers; and the
// lines of each failure.
TEST(PathReading, FollowsTheTokenRules) {
  const JsonRef root = parse(R"({"a":{"b":[10,{"c":1}],"":"e"},"n":null,"v":[null]})");
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"a.b.[ 1 ]", R"({"c":1})", ""},
      {"a.b.[+1]", R"({"c":1})", ""},
      {"a.b.[1x", R"({"c":1})", ""},
      {"a.b.[1y]", R"({"c":1})", kLeftover},
      {"a.b.[z]", "10", kLeftover},
      {"a.b.[0x1]", "10", kLeftover},
      {"a.b.[-4294967295].c", "1", ""},
      {"a.b.[2]", "null", "ERROR: Request wrong index num=2 len=2!\n"},
      {"a.b.[-1]", "null", "ERROR: Request wrong index num=-1 len=2!\n"},
      {"a.b.[99999999999]", "null", "ERROR: Request wrong index num=-1 len=2!\n"},
      {"a.b.[]", "null", "ERROR: Wrong array index [] - size:2\n"},
      {"a.b.[ \t]", "null", "ERROR: Wrong array index [ \t] - size:4\n"},
      {"a.[0]", "null", "ERROR: Object is not array 'object'!\n"},
      {"n.[0]", "null", "ERROR: Object is not array 'null'!\n"},
      {"v.[0]", "null", "ERROR: Cannot get array index num=0 len=1!\n"},
  };
  for (const auto& [path, value, lines] : rows) {
    SCOPED_TRACE(path);
    CapturedLog log({LOG_ERROR});
    EXPECT_EQ(value, plain(JsonData::getJObj(root.get(), path)));
    EXPECT_EQ(lines, log.text());
  }
}

TEST(PathReading, LogsItsSteps) {
  const JsonRef root = parse(R"({"a":{"b":[]}})");
  const auto logOf = [&](const char* path) {
    return linesOf([&] { JsonData::getJObj(root.get(), path); });
  };
  EXPECT_EQ(
      "DEBUG: getJObj: Parse: idx=0 key=a isEnd=false\n"
      "DEBUG: getJObj: continue search next key\n"
      "DEBUG: getJObj: Parse: idx=1 key=b isEnd=true\n"
      "DEBUG: getJObj: found the object b\n"
      "INFO: getJObj: FOUND parent=PTR, key=b\n",
      logOf("a.b"));
  EXPECT_EQ(
      "DEBUG: getJObj: Parse: idx=0 key=x isEnd=false\n"
      "DEBUG: getJObj: cannot found the object x.y\n"
      "INFO: getJObj: FOUND parent=PTR, key=x\n",
      logOf("x.y"));
  EXPECT_EQ("", logOf(""));
}

TEST(PathReading, LeavesOutParametersAloneWithoutARootOrAPath) {
  const JsonRef root = parse("{}");
  json_object* parent = root.get();
  const char* key = "before";
  CapturedLog log;
  EXPECT_EQ(nullptr, JsonData::getJObj(nullptr, "a", parent, key));
  EXPECT_EQ(nullptr, JsonData::getJObj(root.get(), nullptr, parent, key));
  EXPECT_EQ(root.get(), parent);
  EXPECT_STREQ("before", key);
  EXPECT_TRUE(log.has("ERROR: getJObj: wrong params jobj="));
}

// X stands for the value, and `error` is the one line of a store that fails. A short path that
// makes something is the model's to check.
TEST(PathWriting, MakesWhatIsMissing) {
  const struct {
    const char* before;
    const char* path;
    const char* after;
    const char* error;
  } rows[] = {
      {"{}", "m.[0].[0].[9].k", R"({"m":[[[{"k":X}]]]})", ""},
      {R"({"a":"s"})", "a.[0]", R"({"a":"s"})", "existing object is not array 'a'\n"},
      {"{}", "[0]", "{}", "existing object is not array ''\n"},
      {"{}", "n.[]", R"({"n":{}})", "wrong array format []\n"},
      {R"({"l":[null]})", "l.[0].x", R"({"l":[null]})",
       "cannot get array element at idx=0 'l.[0]'\n"},
      {R"({"a":"s"})", "a.b", R"({"a":"s"})", "fail to add jval 'b' to jcrr=PTR jprt=PTR\n"},
      {R"({"a":[1]})", "a.b.c", R"({"a":[1]})", "fail to add new object 'b'\n"},
      {"{}", "", "{}", "wrong params jobj=PTR path=PTR\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.before << " " << row.path);
    CapturedLog log({LOG_ERROR});
    const JsonRef root = parse(row.before);
    const JsonRef value = parse("\"X\"");
    const bool isStored = row.error[0] == '\0';
    EXPECT_EQ(isStored ? 0 : 2, JsonData::setJObj(root.get(), row.path, value.get()));
    EXPECT_EQ(row.after, replaced(plain(root.get()), "\"X\"", "X"));
    EXPECT_EQ(isStored ? "" : std::string("ERROR: JsonData::setJObj: ") + row.error, log.text());
  }
}

// Each line without its severity and operation: "D" and "d" are LOG_DEBUG of the operation's long
// and short name.
TEST(PathWriting, LogsItsSteps) {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {R"({"a":{}})", "a.b.c",
       "d Parse: idx=0 key=a isEnd=false\n"
       "D get child object at '.a' isNew=false\n"
       "d Parse: idx=1 key=b isEnd=false\n"
       "D get child object at 'a.b' isNew=true\n"
       "D create new empty jchl to current object a.b\n"
       "d Parse: idx=2 key=c isEnd=true\n"
       "D set jval to current object jcrr=PTR jval=PTR b.c\n"
       "d FOUND parent=PTR key=c\n"},
      {"{}", "l.[0].[7]",
       "d Parse: idx=0 key=l isEnd=false\n"
       "D get child object at '.l' isNew=true\n"
       "D create new empty jchl to current object .l\n"
       "d Parse: idx=1 key=[0] isEnd=false\n"
       "d recreate array object 'l' delete PTR=1\n"
       "D add new array element at 0 'l.[0]'\n"
       "d Parse: idx=2 key=[7] isEnd=true\n"
       "d recreate array object '[0]' delete PTR=1\n"
       "D add new array element at 7 '[0].[7]'\n"
       "d FOUND parent=PTR key=[7]\n"},
      {R"({"l":[[1]]})", "l.[0].[0]",
       "d Parse: idx=0 key=l isEnd=false\n"
       "D get child object at '.l' isNew=false\n"
       "d Parse: idx=1 key=[0] isEnd=false\n"
       "D get array element at idx=0, 'l.[0]'\n"
       "d Parse: idx=2 key=[0] isEnd=true\n"
       "D replace array element at idx=0 '[0].[0]'\n"
       "d FOUND parent=PTR key=[0]\n"},
      {"[]", "x",
       "W setting an TMO into an array, append it to the array by default\n"
       "d Parse: idx=0 key=[0] isEnd=false\n"
       "D add new array element at 0 '.[0]'\n"
       "d Parse: idx=1 key=x isEnd=true\n"
       "D set jval to current object jcrr=PTR jval=PTR [0].x\n"
       "d FOUND parent=PTR key=x\n"},
  };
  for (const auto& [before, path, lines] : rows) {
    SCOPED_TRACE(path);
    const JsonRef root = parse(before);
    const JsonRef value = parse("7");
    CapturedLog log;
    EXPECT_EQ(0, JsonData::setJObj(root.get(), path, value.get()));
    std::string logged = log.text();
    logged = replaced(replaced(logged, "DEBUG: JsonData::setJObj:", "D"), "DEBUG: setJObj:", "d");
    EXPECT_EQ(lines, replaced(logged, "WARN: JsonData::setJObj:", "W"));
  }
}

TEST(PathWriting, KeepsTheTreeATree) {
  const JsonRef root = parse(R"({"a":{"b":[{}]},"n":1})");
  json_object* const a = JsonData::getJObj(root.get(), "a");
  json_object* const inner = JsonData::getJObj(a, "b.[0]");
  const std::string before = plain(root.get());
  const struct {
    json_object* destination;
    const char* path;
    json_object* value;
    const char* error;
  } rows[] = {
      {root.get(), "self", root.get(), "fail to add jval 'self' to jcrr=PTR jprt=(nil)\n"},
      {a, "b.x", JsonData::getJObj(a, "b"), "fail to add jval 'x' to jcrr=PTR jprt=PTR\n"},
      {a, "b.[9]", root.get(), "fail to add new array element idx=9 key=b\n"},
      {inner, "up", a, "fail to add jval 'up' to jcrr=PTR jprt=(nil)\n"},
      {a, "b.[0]", a, "fail to replace array element 0 b.[0]\n"},
  };
  for (const auto& row : rows) {
    CapturedLog log({LOG_ERROR});
    EXPECT_EQ(2, JsonData::setJObj(row.destination, row.path, row.value));
    EXPECT_EQ(std::string("ERROR: JsonData::setJObj: ") + row.error, log.text());
  }
  EXPECT_EQ(before, plain(root.get()));
  // A value may be shared where that makes no cycle, and may be stored where it stands already.
  EXPECT_EQ(0, JsonData::setJObj(root.get(), "twin", inner));
  EXPECT_EQ(0, JsonData::setJObj(root.get(), "n", JsonData::getJObj(root.get(), "n")));
  EXPECT_EQ(0, JsonData::setJObj(root.get(), "a.b.[0]", inner));
  EXPECT_EQ(R"({"a":{"b":[{}]},"n":1,"twin":{}})", plain(root.get()));
}

TEST(PathLimits, TokensAndPathsOfAnyLength) {
  const std::string name(100000, 'n');
  for (const std::string& path : {name, name + "." + name}) {
    const JsonRef root = parse("{}");
    const JsonRef value = parse("7");
    json_object* parent = nullptr;
    const char* key = nullptr;
    ASSERT_EQ(0, JsonData::setJObj(root.get(), path.c_str(), value.get(), parent, key));
    EXPECT_EQ(path.substr(path.rfind('.') + 1), key);
    std::free(const_cast<char*>(key));
    EXPECT_EQ(value.get(), JsonData::getJObj(root.get(), path.c_str()));
  }
  const std::vector<JsonRef> deep = nested(100000);
  std::string path;
  for (int level = 99999; level > 0; --level) {
    path += level % 2 != 0 ? "[0]." : "k.";
  }
  path += "k";
  const JsonRef text = parse("\"text\"");
  EXPECT_EQ("1", plain(JsonData::getJObj(deep.front().get(), path.c_str())));
  EXPECT_EQ(0, JsonData::setJObj(deep.front().get(), path.c_str(), text.get()));
  EXPECT_EQ(text.get(), JsonData::getJObj(deep.front().get(), path.c_str()));
  // A member path applied to an array is cut at 255 characters, index included.
  const JsonRef array = parse("[]");
  const JsonRef value = parse("7");
  ASSERT_EQ(0, JsonData::setJObj(array.get(), name.c_str(), value.get()));
  EXPECT_NE(nullptr, JsonData::getJObj(array.get(), ("[0]." + name.substr(0, 251)).c_str()));
}

TEST(PathLimits, OnlyPathsOfUpTo64TokensMakeWhatIsMissing) {
  const JsonRef root = parse(R"({"l":[]})");
  const JsonRef value = parse("7");
  std::string path = "a";
  for (int tokens = 1; tokens < 64; ++tokens) {
    path += tokens % 3 == 0 ? ".[0]" : ".a";
  }
  const auto store = [&](const std::string& where) {
    return linesOf([&] { JsonData::setJObj(root.get(), where.c_str(), value.get()); }, {LOG_ERROR});
  };
  EXPECT_EQ("", store(path));
  EXPECT_EQ(value.get(), JsonData::getJObj(root.get(), path.c_str()));
  const std::string before = plain(root.get());
  EXPECT_EQ("ERROR: JsonData::setJObj: fail to add new object 'b'\n", store("b." + path));
  EXPECT_EQ("ERROR: JsonData::setJObj: fail to add new array element idx=0 key=l\n",
            store("l.[0]." + path.substr(2)));
  EXPECT_EQ(before, plain(root.get()));
  // What is made is plain, with nothing of the library's on it.
  json_object* copy = nullptr;
  EXPECT_EQ(0, json_object_deep_copy(root.get(), &copy, nullptr));
  json_object_put(copy);
}

}  // namespace
