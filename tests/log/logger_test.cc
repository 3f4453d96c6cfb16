#include "hearth/logger.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <sstream>
#include <thread>
#include <vector>

#include "hearth/be_config.h"
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
    setSwitches(1, 1, 1, 1);
  }

  static void setSwitches(int info, int warning, int debug, int error) {
    BEConfig::LOG_INFO_ENABLE = info;
    BEConfig::LOG_WARNING_ENABLE = warning;
    BEConfig::LOG_DEBUG_ENABLE = debug;
    BEConfig::LOG_ERROR_ENABLE = error;
  }

  // What one print, of any type and group, writes to standard output.
  static std::string printed(int type = LOG_ERROR, int group = LOG_GROUP_UTIL) {
    testing::internal::CaptureStdout();
    Logger::print(static_cast<LOG_TYPE_T>(type), static_cast<LOG_GROUP_T>(group), "n=%d\n", 7);
    return testing::internal::GetCapturedStdout();
  }
};

TEST_F(LoggerTest, FiltersByGroupThenSeverity) {
  const struct {
    uint32_t mask;
    int type, group;
    bool isWritten[5];  // all switches on; then INFO, WARN, DEBUG, ERROR alone off
  } kCases[] = {
      {0, LOG_PRINT, 0, {false, false, false, false, false}},
      {1, LOG_INFO, 0, {true, false, true, true, true}},
      {1, LOG_WARNING, 0, {true, true, false, true, true}},
      {1, LOG_DEBUG, 0, {true, true, true, false, true}},
      {1, LOG_ERROR, 0, {true, true, true, true, false}},
      {1, 7, 0, {true, true, true, true, true}},
      {0xfffffffe, LOG_PRINT, 0, {false, false, false, false, false}},
      {0x80000000, LOG_PRINT, 31, {true, true, true, true, true}},
      {0xffffffff, LOG_PRINT, 32, {false, false, false, false, false}},
      {0xffffffff, LOG_PRINT, -1, {false, false, false, false, false}},
  };
  for (const auto& c : kCases) {
    Logger::mask = c.mask;
    for (int off = 0; off < 5; ++off) {
      setSwitches(off != 1, off != 2, off != 3, off != 4);
      EXPECT_EQ(c.isWritten[off], !printed(c.type, c.group).empty())
          << std::hex << c.mask << " type " << c.type << " group " << c.group << " off " << off;
    }
  }
}

TEST_F(LoggerTest, SetGroupChangesOneBit) {
  const struct {
    uint32_t before;
    int group;
    bool enable;
    uint32_t after;
  } kCases[] = {
      {0, 0, true, 1},         {5, 2, false, 1},
      {0, 31, true, 1U << 31}, {0xffffffff, 31, false, 0x7fffffff},
      {5, 40, true, 5},        {5, 40, false, 5},
      {5, 32, true, 5},        {5, -1, false, 5},
  };
  for (const auto& c : kCases) {
    Logger::mask = c.before;
    Logger::setGroup(static_cast<LOG_GROUP_T>(c.group), c.enable);
    EXPECT_EQ(c.after, Logger::mask) << c.before << " " << c.group << " " << c.enable;
  }
}

TEST_F(LoggerTest, InitSettlesFileLogging) {
  mkdir("folder", 0777);
  putText("full", "kept\n");
  symlink("target", "dangling");
  symlink("loop", "loop");
  const struct {
    const char* file;
    int logToFile, before, after;
  } kCases[] = {
      {"new1", 1, 0, 1},     {"new2", 5, 1, 1},   {"new3", 0, 1, 0},     {"full", 0, 1, 1},
      {"full", 1, 0, 0},     {"folder", 0, 1, 1}, {"dangling", 1, 0, 1}, {"missing/log", 1, 1, 0},
      {"full/log", 1, 1, 0}, {"", 1, 1, 0},       {"loop", 1, 1, 0},     {"/dev/null", 0, 1, 1},
  };
  BEConfig::LOG_MASK = 0x5a;
  for (const auto& c : kCases) {
    BEConfig::LOG_FILE = c.file;
    BEConfig::LOG_TO_FILE = c.logToFile;
    Logger::enableFileLog = c.before;
    EXPECT_EQ(0, Logger::init());
    EXPECT_EQ(c.after, Logger::enableFileLog) << c.file << " " << c.logToFile;
    EXPECT_EQ(0x5aU, Logger::mask);
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
    EXPECT_EQ("fail to open file " + file + "\n" + kLine, printed());
  }
  BEConfig::LOG_FILE = "missing/log";
  mkdir("missing", 0777);
  EXPECT_EQ(kLine, printed());
  BEConfig::LOG_FILE = "/dev/full";
  EXPECT_EQ(kLine, printed()) << "a full device is nobody's business";
}

TEST_F(LoggerTest, LinesOfThreadsDoNotInterleave) {
  constexpr int kThreads = 4;
  constexpr int kLines = 200;
  testing::internal::CaptureStdout();
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([t] {
      for (int i = 0; i < kLines; ++i) {
        Logger::print(LOG_INFO, LOG_GROUP_UTEST, "%d %d %0500d\n", t, i, 0);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  const std::string text = testing::internal::GetCapturedStdout();
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
