// The wait as a function of numbers, and the store through its file: what the operations leave
// there, and what they make of what others left.
#include <sys/mount.h>
#include <sys/stat.h>

#include <ctime>
#include <tuple>

#include "base/json_ref.h"
#include "base/mutex_lock.h"
#include "hearth/be_config.h"
#include "hearth/be_login_record.h"
#include "hearth/logger.h"
#include "login/login_wait.h"
#include "tests/support/scratch.h"

namespace hearth {
namespace {

constexpr char kFile[] = ".loginrecord.cfg";
constexpr char kLost[] = "UTIL          |ERROR: Cannot write Database file, the change is lost\n";

TEST(LoginWait, CountsDownFromThePenalty) {
  constexpr time_t kNow = 1000000;
  const std::tuple<int32_t, const char*, uint32_t> rows[] = {
      {4, "1000000", 0},
      {-5, "1000000", 0},
      {5, "1000000", 1},
      {5, "999970", 1},
      {5, "999941", 1},
      {5, "999940", 0},
      {7, "999875", 1},
      {7, "999800", 0},
      {7, "1000001", 3},
      {7, "never", 0},
      {7, "", 0},
      {7, "-1", 3},
      {7, " +999875x", 1},
      {7, "99999999999999999999999", 3},
      {INT32_MAX, "1000000", INT32_MAX - 4},
  };
  for (const auto& [attempts, last, wait] : rows) {
    EXPECT_EQ(wait, waitMinutes(attempts, last, kNow)) << attempts << " " << last;
  }
}

class LoginRecordTest : public Scratch {
 protected:
  LoginRecordTest() {
    Logger::mask = 1;
    Logger::enableFileLog = 0;
    BELoginRecord::isRunning = false;
  }

  // Starts the store on a file of this text.
  static void startWith(const std::string& text) {
    BELoginRecord::isRunning = false;
    EXPECT_EQ("init: new record file is created\n", printed(BELoginRecord::init));
    putText(kFile, text);
  }

  // "attempts/wait" of an address.
  static std::string infoOf(const char* ipAddress) {
    const LOGIN_ATTEMPT_INFO info = BELoginRecord::getAttempt(ipAddress);
    return std::to_string(info.attempts) + "/" + std::to_string(info.waitMinutes);
  }

  // The text of the file, with every time since the test's start as NOW.
  std::string fileNow() const {
    std::string text = textOf(kFile);
    for (time_t t = start_; t <= time(nullptr); ++t) {
      for (std::size_t at = 0; (at = text.find(std::to_string(t))) != std::string::npos;) {
        text.replace(at, std::to_string(t).size(), "NOW");
      }
    }
    return text;
  }

  const time_t start_ = time(nullptr);
};

std::string oneRecord(int attempts) {
  return "[\n  {\n    \"ipAddress\":\"10.0.0.1\",\n    \"attempts\":" + std::to_string(attempts) +
         ",\n    \"lastAttempt\":\"NOW\"\n  }\n]";
}

std::string emptyArray() {
  const JsonRef empty(json_object_new_array());
  return json_object_to_json_string_ext(empty.get(), JSON_C_TO_STRING_PRETTY);
}

TEST_F(LoginRecordTest, CountsPerAddress) {
  EXPECT_EQ(1, BELoginRecord::setAttempt("10.0.0.1"));
  EXPECT_EQ("1/0", infoOf("10.0.0.1"));
  EXPECT_EQ(1, BELoginRecord::eraseAttempt("10.0.0.1"));
  EXPECT_TRUE(namesIn(".").empty()) << "a stopped store touches nothing";

  startWith("[]");
  EXPECT_EQ("1/0", infoOf("10.0.0.1"));
  const char* const rows[] = {"1/0", "2/0", "3/0", "4/0", "5/1", "6/2"};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(1, BELoginRecord::setAttempt("10.0.0.1"));
    EXPECT_EQ(oneRecord(i + 1), fileNow());
    EXPECT_EQ(rows[i], infoOf("10.0.0.1")) << "attempt " << i + 1;
  }
  const std::string before = textOf(kFile);
  EXPECT_EQ(1, BELoginRecord::eraseAttempt("10.0.0.2"));
  EXPECT_EQ(before, textOf(kFile));
  EXPECT_EQ(1, BELoginRecord::eraseAttempt("10.0.0.1"));
  EXPECT_EQ(oneRecord(0), fileNow());
  EXPECT_EQ("0/0", infoOf("10.0.0.1"));
  {
    const MutexLock lock(BELoginRecord::lock);  // which neither takes
    EXPECT_EQ("UTIL          | WARN: The process is running\n", printed(BELoginRecord::init));
    EXPECT_EQ("deinit: erased record file\n", printed(BELoginRecord::deinit));
  }
  EXPECT_EQ(emptyArray(), textOf(kFile));
  EXPECT_TRUE(BELoginRecord::isRunning);
}

TEST_F(LoginRecordTest, KeepsWhatItDoesNotUnderstand) {
  startWith(R"([1,{"ipAddress":5},{"ipAddress":"a\u0000"},{"x":1,"ipAddress":"a","y":2},)"
            R"({"ipAddress":"a","attempts":9}])");
  BELoginRecord::setAttempt("a");
  BELoginRecord::setAttempt("A");
  EXPECT_EQ(
      "[\n  1,\n  {\n    \"ipAddress\":5\n  },\n  {\n    \"ipAddress\":\"a\\u0000\"\n  },\n"
      "  {\n    \"x\":1,\n    \"ipAddress\":\"a\",\n    \"y\":2,\n    \"attempts\":1,\n"
      "    \"lastAttempt\":\"NOW\"\n  },\n  {\n    \"ipAddress\":\"a\",\n    \"attempts\":9\n  },\n"
      "  {\n    \"ipAddress\":\"A\",\n    \"attempts\":1,\n    \"lastAttempt\":\"NOW\"\n  }\n]",
      fileNow());
}

TEST_F(LoginRecordTest, ReadsAnyRecord) {
  const char kError[] = "UTIL          |ERROR: Something error occurred\n";
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {R"("attempts":7,"lastAttempt":"1")", "7/0", ""},
      {R"("attempts":7,"lastAttempt":1)", "7/0", ""},
      {R"("attempts":7,"lastAttempt":{})", "7/0", ""},
      {R"("attempts":7,"lastAttempt":"9999999999")", "7/3", ""},
      {R"("attempts":7,"lastAttempt":null)", "7/3", kError},
      {R"("attempts":7)", "7/3", kError},
      {R"("attempts":4)", "4/0", ""},
      {R"("lastAttempt":"1")", "0/0", ""},
      {R"("attempts":"6","lastAttempt":"1")", "6/0", ""},
      {R"("attempts":99999999999)", "2147483647/2147483643", kError},
  };
  for (const auto& [members, info, out] : rows) {
    startWith(std::string(R"([{"ipAddress":"a",)") + members + "}]");
    std::string found;
    EXPECT_EQ(out, printed([&found] { found = infoOf("a"); })) << members;
    EXPECT_EQ(info, found) << members;
  }
  BELoginRecord::setAttempt("a");
  EXPECT_EQ("2147483647/2147483643", infoOf("a")) << "the count stays at its end";
}

TEST_F(LoginRecordTest, ABrokenFileStopsTheStore) {
  const std::pair<const char*, const char*> rows[] = {{"", "Cannot access Database file\n"},
                                                      {"[", "Cannot access Database file\n"},
                                                      {"null", "Cannot access Database file\n"},
                                                      {"{}", "File has wrong format\n"},
                                                      {"\"[]\"", "File has wrong format\n"}};
  void (*const kOperations[])() = {[] { EXPECT_EQ(1, BELoginRecord::setAttempt("a")); },
                                   [] { EXPECT_EQ("1/0", infoOf("a")); },
                                   [] { EXPECT_EQ(1, BELoginRecord::eraseAttempt("a")); }};
  for (const auto& [text, line] : rows) {
    for (const auto& operation : kOperations) {
      startWith(text);
      EXPECT_EQ(std::string("UTIL          |ERROR: ") + line, printed(operation)) << text;
      EXPECT_FALSE(BELoginRecord::isRunning) << text;
      EXPECT_EQ("", printed(operation)) << text;
      EXPECT_EQ(text, textOf(kFile));
    }
  }
  BELoginRecord::isRunning = true;
  EXPECT_EQ("UTIL          |ERROR: Null ipaddress\n",
            printed([] { EXPECT_EQ("1/0", infoOf(nullptr)); }));
}

TEST_F(LoginRecordTest, CannotStartWithoutItsFile) {
  mkdir(kFile, 0777);
  EXPECT_EQ("Fail to create record file\n", printed(BELoginRecord::init));
  EXPECT_FALSE(BELoginRecord::isRunning);
  EXPECT_EQ("Fail to create record file\n", printed(BELoginRecord::deinit));
}

TEST_F(LoginRecordTest, AFullDiskDoesNotStopIt) {
  mkdir("disk", 0777);
  if (mount("none", "disk", "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "needs the right to mount";
  }
  std::filesystem::current_path("disk");
  startWith("[]");
  BELoginRecord::setAttempt("10.0.0.1");
  const std::string filler(1 << 20, 'x');
  putText("filler", filler);
  BELoginRecord::setAttempt("10.0.0.1");
  EXPECT_EQ(oneRecord(2), fileNow()) << "counted in the space that the file has";
  EXPECT_NE(std::string::npos, printed([] {
                                 for (int i = 0; i < 100; ++i) {
                                   BELoginRecord::setAttempt(std::to_string(i).c_str());
                                 }
                               }).find(kLost));
  EXPECT_EQ("2/0", infoOf("10.0.0.1")) << "what does not fit is lost, and nothing else";
  startWith("[]");
  EXPECT_EQ((std::set<std::string>{kFile, "filler"}), namesIn("."));
  std::filesystem::current_path("..");
  EXPECT_EQ(0, umount("disk"));
}

// Where no new file can take the old one's place, the old one is written.
TEST_F(LoginRecordTest, IsWrittenInPlaceWhereItCannotBeReplaced) {
  const auto expectCounts = [this] {
    EXPECT_EQ("init: new record file is created\n", printed(BELoginRecord::init));
    for (const int attempts : {1, 2}) {
      EXPECT_EQ("", printed([] { BELoginRecord::setAttempt("10.0.0.1"); }));
      EXPECT_EQ(oneRecord(attempts), fileNow());
    }
    EXPECT_EQ("deinit: erased record file\n", printed(BELoginRecord::deinit));
    EXPECT_EQ(emptyArray(), textOf(kFile));
    BELoginRecord::setAttempt("10.0.0.1");
    BELoginRecord::isRunning = false;
  };
  putText(kFile, "");
  if (mount(kFile, kFile, nullptr, MS_BIND, nullptr) == 0) {
    expectCounts();
    EXPECT_EQ(0, umount(kFile));
  }

  const uid_t me = geteuid();
  const uid_t plain = me == 0 ? 65534 : me;
  EXPECT_EQ(0, chown(kFile, plain, static_cast<gid_t>(-1)));
  chmod(".", 0555);
  ASSERT_EQ(0, seteuid(plain));
  expectCounts();
  chmod(kFile, 0444);
  BELoginRecord::isRunning = true;
  for (int (*const operation)(const char*) :
       {BELoginRecord::setAttempt, BELoginRecord::eraseAttempt}) {
    EXPECT_EQ(kLost, printed([=] { EXPECT_EQ(1, operation("10.0.0.1")); }));
    EXPECT_EQ(oneRecord(1), fileNow());
  }
  EXPECT_TRUE(BELoginRecord::isRunning);
  ASSERT_EQ(0, seteuid(me));
  chmod(".", 0755);
}

TEST_F(LoginRecordTest, CountsForManyThreads) {
  startWith("[]");
  inThreads(4, [](unsigned int) {
    for (int i = 0; i < 25; ++i) {
      BELoginRecord::setAttempt("a");
      BELoginRecord::getAttempt("a");
    }
  });
  EXPECT_EQ("100/96", infoOf("a"));
}

}  // namespace
}  // namespace hearth
