// The logger as a program meets it: what its filters let through, and where a line goes.
#include "hearth/logger.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <sstream>

#include "tests/support/captured_log.h"
#include "tests/support/scratch.h"

namespace hearth {
namespace {

constexpr char kLine[] = "UTIL          |ERROR: n=7\n";

// Every test starts as a process does, but for the mask, which lets everything through.
class LoggerTest : public Scratch {
 protected:
  LoggerTest() {
    Logger::mask = 0x0fffffff;
    Logger::enableFileLog = 1;
    BEConfig::LOG_FILE = "./log";
    BEConfig::LOG_TO_FILE = 1;
  }

  // What one print, of any type and group, writes to standard output.
  static std::string printed(int type = LOG_ERROR, int group = LOG_GROUP_UTIL) {
    return ::printed([=] {
      Logger::print(static_cast<LOG_TYPE_T>(type), static_cast<LOG_GROUP_T>(group), "n=%d\n", 7);
    });
  }
};

TEST_F(LoggerTest, FiltersByGroupThenSeverity) {
  struct Row {
    uint32_t mask;
    int type;
    int group;
    const char* written;  // w or -: with INFO, WARN, DEBUG, ERROR alone off, and with all on
  };
  const Row rows[] = {
      {0, LOG_PRINT, 0, "-----"},           {1, LOG_INFO, 0, "-wwww"},
      {1, LOG_WARNING, 0, "w-www"},         {1, LOG_DEBUG, 0, "ww-ww"},
      {1, LOG_ERROR, 0, "www-w"},           {1, 7, 0, "wwwww"},
      {0xfffffffe, LOG_PRINT, 0, "-----"},  {0x80000000, LOG_PRINT, 31, "wwwww"},
      {0xffffffff, LOG_PRINT, 32, "-----"}, {0xffffffff, LOG_PRINT, -1, "-----"},
  };
  for (const auto& [mask, type, group, expected] : rows) {
    Logger::mask = mask;
    std::string written;
    for (int32_t* const enabled : logSwitches()) {
      *enabled = 0;
      written += printed(type, group).empty() ? '-' : 'w';
      *enabled = 1;
    }
    written += printed(type, group).empty() ? '-' : 'w';
    EXPECT_EQ(expected, written) << std::hex << mask << " type " << type << " group " << group;
  }
}

TEST_F(LoggerTest, GroupsHaveTheirNames) {
#define HEARTH_GROUP(name) \
  { LOG_GROUP_##name, #name }
  const std::pair<LOG_GROUP_T, const char*> rows[] = {
      HEARTH_GROUP(UTIL),           HEARTH_GROUP(WSL),           HEARTH_GROUP(API_AL),
      HEARTH_GROUP(APIV1_GATEWAY),  HEARTH_GROUP(APIV1_WIFI),    HEARTH_GROUP(APIV1_NETWORK),
      HEARTH_GROUP(APIV1_SECURITY), HEARTH_GROUP(APIV1_SERVICE), HEARTH_GROUP(APIV1_MEDIA),
      HEARTH_GROUP(APIV1_QOS),      HEARTH_GROUP(FAL),           HEARTH_GROUP(LDB_GATEWAY),
      HEARTH_GROUP(LDB_WIFI),       HEARTH_GROUP(LDB_NETWORK),   HEARTH_GROUP(LDB_SECURITY),
      HEARTH_GROUP(LDB_SERVICE),    HEARTH_GROUP(LDB_MEDIA),     HEARTH_GROUP(LDB_QOS),
      HEARTH_GROUP(UTEST)};
  int value = 0;
  for (const auto& [group, name] : rows) {
    EXPECT_EQ(value, group) << name;
    EXPECT_STREQ(name, Logger::LogGroupNames[value++]);
  }
  EXPECT_EQ(19, value);
}

TEST_F(LoggerTest, SetGroupChangesOneBit) {
  struct Row {
    uint32_t before;
    int group;
    bool isEnabled;
    uint32_t after;
  };
  const Row rows[] = {
      {0, 0, true, 1},         {5, 2, false, 1},
      {0, 31, true, 1U << 31}, {0xffffffff, 31, false, 0x7fffffff},
      {5, 40, true, 5},        {5, 40, false, 5},
      {5, 32, true, 5},        {5, -1, false, 5},
  };
  for (const auto& [before, group, isEnabled, after] : rows) {
    Logger::mask = before;
    Logger::setGroup(static_cast<LOG_GROUP_T>(group), isEnabled);
    EXPECT_EQ(after, Logger::mask) << before << " " << group << " " << isEnabled;
  }
}

TEST_F(LoggerTest, InitSettlesFileLogging) {
  mkdir("folder", 0777);
  putText("full", "kept\n");
  symlink("target", "dangling");
  symlink("loop", "loop");
  struct Row {
    const char* file;
    int logToFile;  // the setting
    int before;     // file logging, before and after init
    int after;
  };
  const Row rows[] = {
      {"new1", 1, 0, 1},     {"new2", 5, 1, 1},   {"new3", 0, 1, 0},     {"full", 0, 1, 1},
      {"full", 1, 0, 0},     {"folder", 0, 1, 1}, {"dangling", 1, 0, 1}, {"missing/log", 1, 1, 0},
      {"full/log", 1, 1, 0}, {"", 1, 1, 0},       {"loop", 1, 1, 0},     {"/dev/null", 0, 1, 1},
  };
  BEConfig::LOG_MASK = 0x5a;
  for (const auto& [file, logToFile, before, after] : rows) {
    BEConfig::LOG_FILE = file;
    BEConfig::LOG_TO_FILE = logToFile;
    Logger::enableFileLog = before;
    EXPECT_EQ(0, Logger::init());
    EXPECT_EQ(after, Logger::enableFileLog) << file << " " << logToFile;
    EXPECT_EQ(0x5aU, Logger::mask) << file;
  }
  EXPECT_EQ("kept\n", textOf("full"));
  EXPECT_EQ((std::set<std::string>{"dangling", "folder", "full", "loop", "new1", "new2", "new3",
                                   "target"}),
            namesIn("."));
}

TEST_F(LoggerTest, LineGoesToTheFileAndToTheConsole) {
  errno = 77;
  EXPECT_EQ(kLine, printed());
  EXPECT_EQ(77, errno) << "errno is the caller's";
  EXPECT_EQ(kLine, printed());
  EXPECT_EQ(std::string(kLine) + kLine, textOf("log"));
  std::filesystem::rename("log", "log.1");
  printed();
  EXPECT_EQ(kLine, textOf("log")) << "after a rotation";
  Logger::enableFileLog = 0;
  EXPECT_EQ(kLine, printed());
  EXPECT_EQ(kLine, textOf("log")) << "file logging is off";
}

TEST_F(LoggerTest, FileThatCannotBeOpenedIsNamedAndTriedAgain) {
  mkfifo("pipe", 0666);
  const std::string tooLong(5000, 'x');
  for (const std::string& file : {std::string("missing/log"), std::string("."), std::string(""),
                                  std::string("pipe"), tooLong}) {
    BEConfig::LOG_FILE = file;
    EXPECT_EQ("fail to open file " + file + "\n" + kLine, printed()) << file.substr(0, 80);
  }
  BEConfig::LOG_FILE = "missing/log";
  mkdir("missing", 0777);
  EXPECT_EQ(kLine, printed());
  BEConfig::LOG_FILE = "/dev/full";
  EXPECT_EQ(kLine, printed()) << "a full device is nobody's business";
}

TEST_F(LoggerTest, WaitsForWhoeverHoldsTheLock) {
  pthread_mutex_lock(&Logger::lock);
  std::thread other([] { printed(); });
  usleep(100'000);  // plenty for a line that does not wait
  EXPECT_EQ("", textOf("log"));
  pthread_mutex_unlock(&Logger::lock);
  other.join();
  EXPECT_EQ(kLine, textOf("log"));
}

TEST_F(LoggerTest, LinesOfThreadsDoNotInterleave) {
  constexpr int kThreads = 4;
  constexpr int kLines = 200;
  const std::string text = ::printed([] {
    inThreads(kThreads, [](unsigned int t) {
      for (int i = 0; i < kLines; ++i) {
        Logger::print(LOG_INFO, LOG_GROUP_UTEST, "%u %d %0500d\n", t, i, 0);
      }
    });
  });
  EXPECT_EQ(text, textOf("log")) << "file and console show one order";
  int next[kThreads] = {};
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    int t = 0;
    int i = 0;
    ASSERT_EQ(2, sscanf(line.c_str(), "UTEST         | INFO: %d %d 0", &t, &i)) << line;
    EXPECT_EQ(next[t]++, i);
  }
  EXPECT_EQ(kThreads, std::count(next, next + kThreads, kLines));
}

}  // namespace
}  // namespace hearth
