// Database files that are no database: the lock answers as for any that does not parse, nothing
// waits, and no save puts anything in their place.
#include <json-c/json.h>
#include <sys/stat.h>

#include <memory>
#include <tuple>

#include "hearth/hearth.h"
#include "tests/support/scratch.h"

namespace {

constexpr char kFile[] = "qos/qos.ldb";

class BadFilesTest : public Scratch {
 protected:
  BadFilesTest() {
    std::filesystem::create_directory("qos");
    BEConfig::DATA_LOCATION = ".";
    LocalDbCtrl::init();
    alarm(60);  // ends a test that waits for a pipe or reads a device
  }
  ~BadFilesTest() override { alarm(0); }

  // The file's kind and mode, its size, its identity.
  static std::tuple<mode_t, off_t, ino_t> description() {
    struct stat is {};
    lstat(kFile, &is);
    return {is.st_mode, is.st_size, is.st_ino};
  }

  static void expectUntouched() {
    const auto before = description();
    EXPECT_EQ(nullptr, LocalDbCtrl::lockDbObject(API_QOS, "count", "default"));
    TreeMapObject* const whole = LocalDbCtrl::lockDbObject(API_QOS, "", "default");
    ASSERT_NE(nullptr, whole) << "a file that is there";
    EXPECT_EQ(nullptr, whole->jobj);
    whole->set("count", 1);
    EXPECT_EQ(2, LocalDbCtrl::saveDbObject(API_QOS, "default"));
    EXPECT_EQ(before, description());
    EXPECT_EQ(std::set<std::string>{"qos.ldb"}, namesIn("qos"));
  }
};

TEST_F(BadFilesTest, TextsThatDoNotParse) {
  const std::string whole = R"({"count":1,"a":[1.5e3,{"b":"\u00e9 \"x\""},true,null],"":{}})";
  std::string binary;
  for (int c = 255; c >= 0; --c) {
    binary += static_cast<char>(c);
  }
  std::vector<std::string> texts = {std::string(4096, '\0'), whole.substr(0, 20) + '\0', binary,
                                    "\xef\xbb\xbf" + whole};
  for (std::size_t size = 0; size < whole.size(); ++size) {
    texts.push_back(whole.substr(0, size));
  }
  for (const std::string& text : texts) {
    SCOPED_TRACE(text.substr(0, 80) + " of " + std::to_string(text.size()));
    putText(kFile, text);
    expectUntouched();
    ASSERT_EQ(text, textOf(kFile));
  }
}

TEST_F(BadFilesTest, ThingsThatAreNoTexts) {
  const std::pair<const char*, void (*)()> rows[] = {
      {"folder", [] { mkdir(kFile, 0777); }},
      {"pipe", [] { mkfifo(kFile, 0666); }},
      {"50 MB of nothing",
       [] {
         putText(kFile, "[");
         std::filesystem::resize_file(kFile, 50'000'000);
       }},
      {"endless device", [] { std::filesystem::create_symlink("/dev/zero", kFile); }},
  };
  for (const auto& [name, make] : rows) {
    SCOPED_TRACE(name);
    make();
    expectUntouched();
    std::filesystem::remove(kFile);
  }
}

TEST_F(BadFilesTest, AnUnreadableOne) {
  const uid_t me = geteuid();
  putText(kFile, R"({"count":1})");
  chmod(".", 0755);
  chmod(kFile, 0);
  chmod("qos", 0777);
  ASSERT_EQ(0, seteuid(me == 0 ? 65534 : me));
  EXPECT_EQ(nullptr, LocalDbCtrl::lockDbObject(API_QOS, "", "default"));
  EXPECT_EQ(LDB_NOT_INITIALIZED, LocalDbCtrl::getDBByKey("default")->state[API_QOS]);
  ASSERT_EQ(0, seteuid(me));
  chmod(kFile, 0600);
  EXPECT_NE(nullptr, LocalDbCtrl::lockDbObject(API_QOS, "", "default"));
}

// The way out: the next lock reads a file that has been put in its place, and only such a one.
TEST_F(BadFilesTest, AreReadAgainByEachLock) {
  const auto count = [](const char* key) {
    const std::unique_ptr<TreeMapObject> held(LocalDbCtrl::lockDbObject(API_QOS, "count", key));
    LocalDbCtrl::unlockDbObject(API_QOS, key);
    return held != nullptr ? json_object_get_int(held->jobj) : -1;
  };
  putText(kFile, "{");
  LocalDbCtrl::cloneNewDB("s");
  for (const char* const key : {"s", "default"}) {
    putText(kFile, "{");
    EXPECT_EQ(-1, count(key));
    std::filesystem::remove(kFile);
    EXPECT_EQ(-1, count(key));
    EXPECT_EQ(LDB_ACCESSIBLE, LocalDbCtrl::getDBByKey(key)->state[API_QOS]) << key;
    putText(kFile, R"({"count":1})");
    EXPECT_EQ(1, count(key));
    putText(kFile, R"({"count":2})");
    EXPECT_EQ(1, count(key)) << "what is in memory stays";
  }
}

TEST_F(BadFilesTest, LargeIsNotBad) {
  std::string filler;
  filler.resize(50'000'000, 'x');
  putText(kFile, R"({"count":1,"filler":")" + filler + R"("})");
  TreeMapObject* const whole = LocalDbCtrl::lockDbObject(API_QOS, "", "default");
  ASSERT_NE(nullptr, whole);
  whole->set("count", 2);
  EXPECT_EQ(0, LocalDbCtrl::saveDbObject(API_QOS, "default"));
  EXPECT_TRUE(folder_.contentsOf(kFile) == "{\n  \"count\":2,\n  \"filler\":\"" + filler + "\"\n}");
}

}  // namespace
