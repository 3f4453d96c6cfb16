// Every call on a file fails, in every way, and the process dies at every one: what was to be
// replaced is then the old or the new, the caller has been told which, nothing is left open or
// lying about, and the next attempt succeeds.
#include "tests/faults/file_faults.h"

#include <json-c/json.h>
#include <sys/mount.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <memory>
#include <random>

#include "base/json_ref.h"
#include "hearth/hearth.h"
#include "tests/support/captured_log.h"
#include "tests/support/scratch.h"

namespace {

using hearth::JsonRef;
using hearth::memberOf;

constexpr FileFault kFaults[] = {
    {"no space", ENOSPC, false},         {"no space from there on", ENOSPC, true},
    {"device error", EIO, false},        {"device gone", EIO, true},
    {"interrupted", EINTR, false},       {"half", FileFault::kHalf, false},
    {"killed", FileFault::kKill, false},
};

enum class Told { kNothing, kOld, kNew };

// Something that is counted in a file. The file counts 1 before each attempt.
struct Scenario {
  const char* name;
  const char* file;
  std::string one;
  int leastCalls;
  bool mayStartAgain;  // an attempt may empty the file first
  void (*start)();     // as a process does that finds the file
  Told (*countOn)();
  int (*counted)();  // -1: the file is broken
};

constexpr char kDatabase[] = "qos/qos.ldb";
constexpr char kLogins[] = ".loginrecord.cfg";
constexpr char kLog[] = "BE.log";
constexpr char kLine[] = "UTIL          | INFO: counted\n";
constexpr std::size_t kFillerSize = 10000;

std::string databaseOf(int count) {
  return R"({"count":)" + std::to_string(count) + R"(,"filler":")" + std::string(kFillerSize, 'x') +
         R"("})";
}

void startDatabase() {
  BEConfig::DATA_LOCATION = ".";
  LocalDbCtrl::init();
}

Told countInDatabase() {
  TreeMapObject* const database = LocalDbCtrl::lockDbObject(API_QOS, "", "default");
  if (database == nullptr) {
    return Told::kOld;
  }
  database->set("count", database->get<int>("count") + 1);
  return LocalDbCtrl::saveDbObject(API_QOS, "default") == 0 ? Told::kNew : Told::kOld;
}

int countedInDatabase() {
  const JsonRef document(json_object_from_file(kDatabase));
  const bool isWhole =
      json_object_get_string_len(memberOf(document.get(), "filler")) == kFillerSize;
  return isWhole ? json_object_get_int(memberOf(document.get(), "count")) : -1;
}

Told countLogin() {
  if (!BELoginRecord::isRunning) {  // stopped by an attempt that could not read the file
    BELoginRecord::init();
  }
  BELoginRecord::setAttempt("a");
  return Told::kNothing;
}

int countedLogins() {
  const JsonRef records(json_object_from_file(kLogins));
  if (!json_object_is_type(records.get(), json_type_array)) {
    return -1;
  }
  return json_object_get_int(memberOf(json_object_array_get_idx(records.get(), 0), "attempts"));
}

Told countLine() {
  Logger::print(LOG_INFO, LOG_GROUP_UTIL, "counted\n");
  return Told::kNothing;
}

int countedLines() {
  const std::string text = textOf(kLog);
  int lines = 0;
  for (std::size_t at = 0; (at = text.find(kLine, at)) != std::string::npos; ++at) {
    ++lines;
  }
  return lines;
}

const Scenario kScenarios[] = {
    {"a database is saved", kDatabase, databaseOf(1), 20, false, startDatabase, countInDatabase,
     countedInDatabase},
    {"a login is counted", kLogins, R"([{"ipAddress":"a","attempts":1}])", 15, true,
     [] { BELoginRecord::isRunning = true; }, countLogin, countedLogins},
    {"a line is logged", kLog, kLine, 3, false, [] { Logger::mask = 1, Logger::enableFileLog = 1; },
     countLine, countedLines},
};

std::size_t strays() {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(".")) {
    count += entry.path().extension() == ".tmp" ? 1U : 0U;
  }
  return count;
}

void expectNextCounts(const Scenario& scenario) {
  const int counted = scenario.counted();
  scenario.countOn();
  const int next = scenario.counted();
  EXPECT_TRUE(next == counted + 1 || (scenario.mayStartAgain && next == 1))
      << counted << ", then " << next;
}

constexpr int kNoSuchCall = 77;

// One attempt, and the next one, in a process of their own.
[[noreturn]] void attempt(const Scenario& scenario, const FileFault& fault, int nth) {
  const auto openFiles = [] { return namesIn("/proc/self/fd").size(); };
  scenario.start();
  const std::size_t open = openFiles();
  failFileCall(nth, fault);
  const Told told = scenario.countOn();
  const int calls = countedFileCalls();
  const int counted = scenario.counted();
  EXPECT_EQ(open, openFiles());
  EXPECT_TRUE(counted == 1 || counted == 2) << counted;
  EXPECT_TRUE(told == Told::kNothing || (told == Told::kNew ? 2 : 1) == counted) << counted;
  EXPECT_TRUE(fault.error != FileFault::kHalf || counted == 2) << "half is no failure";
  EXPECT_LE(strays(), fault.lasts ? 1U : 0U);
  expectNextCounts(scenario);
  exit(testing::Test::HasFailure() ? 1 : calls < nth ? kNoSuchCall : 0);
}

class FileFaultsTest : public ScratchInMemory {
 protected:
  FileFaultsTest() {
    std::filesystem::create_directory("qos");
    // At the first name in a process, json-c 0.15 opens a device for its hashes, and ends it if it
    // cannot.
    parse(R"({"a":1})");
  }

  // False when there is no n-th call, or something is wrong.
  static bool failAt(int nth, const Scenario& scenario, const FileFault& fault) {
    SCOPED_TRACE(testing::Message() << scenario.name << ", " << fault.name << " at call " << nth);
    putText(scenario.file, scenario.one);
    const Ended ended = inChild([&] { attempt(scenario, fault, nth); });
    const int dead = 1000 + SIGKILL;
    EXPECT_TRUE(ended.status == 0 || ended.status == kNoSuchCall ||
                (fault.error == FileFault::kKill && ended.status == dead))
        << ended.status << "\n"
        << ended.out << ended.err;
    EXPECT_LE(strays(), 1U);
    if (fault.lasts || ended.status == dead) {
      EXPECT_TRUE(ended.status != dead || scenario.counted() == 1 || scenario.counted() == 2);
      const Ended later = inChild([&] {
        scenario.start();
        expectNextCounts(scenario);
        exit(testing::Test::HasFailure() ? 1 : 0);
      });
      EXPECT_EQ(0, later.status) << later.out;
      EXPECT_EQ(0U, strays()) << "after a later process has counted";
    }
    return ended.status != kNoSuchCall && !HasFailure();
  }
};

TEST_F(FileFaultsTest, LeaveTheOldOrTheNew) {
  for (const Scenario& scenario : kScenarios) {
    for (const FileFault& fault : kFaults) {
      int nth = 1;
      while (failAt(nth, scenario, fault)) {
        ++nth;
      }
      ASSERT_FALSE(HasFailure());
      EXPECT_GT(nth, scenario.leastCalls) << scenario.name;
    }
  }
}

// A lock whose reading of the file fails is refused, with lines that say so, or has what it asked
// for; the next one has it in any case. The same where the handler was made without the file.
TEST_F(FileFaultsTest, OfOneMomentAreForgottenByTheNextLock) {
  putText(kDatabase, databaseOf(1));
  startDatabase();
  const auto isLocked = [](const char* key) {
    const std::unique_ptr<TreeMapObject> held(LocalDbCtrl::lockDbObject(API_QOS, "count", key));
    return held != nullptr && LocalDbCtrl::unlockDbObject(API_QOS, key) == 0;
  };
  for (const int error : {EMFILE, ENFILE, ENOMEM, EIO, EINTR}) {
    for (const char* const key : {"default", "s"}) {
      int nth = 1;
      for (bool isLast = false; !isLast; ++nth) {
        SCOPED_TRACE(testing::Message() << strerror(error) << " at call " << nth << " for " << key);
        LocalDbCtrl::init();
        putText("qos/qos.ldb", databaseOf(1));
        CapturedLog log({LOG_WARNING});
        failFileCall(nth, {"", error, false});
        const bool isFirst = key[0] == 's' ? LocalDbCtrl::cloneNewDB(key) == 0 : isLocked(key);
        isLast = countedFileCalls() < nth;
        const LOCALDB_STATE_T state = LocalDbCtrl::getDBByKey(key)->state[API_QOS];
        EXPECT_EQ(state == LDB_NOT_INITIALIZED, log.has("from ./qos/qos.ldb"));
        EXPECT_EQ(isFirst, key[0] != 's' && state == LDB_ACCESSIBLE);
        EXPECT_TRUE(isLocked(key));
      }
      EXPECT_GT(nth, 6);
    }
  }
}

TEST_F(FileFaultsTest, SavesKilledAtAnyMomentLoseNothing) {
  putText(kDatabase, databaseOf(0));
  const auto before = std::chrono::steady_clock::now();
  const Ended first = inChild([] {
    startDatabase();
    exit(countInDatabase() == Told::kNew ? 0 : 1);
  });
  const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - before;
  ASSERT_EQ(0, first.status) << first.err;
  std::mt19937 random(1);
  std::uniform_real_distribution<double> moment(0, 4 * took.count());
  int counted = 1;
  for (int round = 0; round < 200 || counted == 1; ++round) {
    const pid_t child = fork();
    if (child == 0) {
      for (startDatabase();;) {
        countInDatabase();
      }
    }
    usleep(static_cast<useconds_t>(moment(random)) * (1 + static_cast<useconds_t>(round) / 200));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    ASSERT_GE(countedInDatabase(), counted);
    ASSERT_LE(strays(), 1U);
    counted = countedInDatabase();
  }
}

TEST_F(FileFaultsTest, AFullDiskKeepsTheOldDocument) {
  if (mount("none", "qos", "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "needs the right to mount";
  }
  putText(kDatabase, databaseOf(1));
  putText("qos/filler", std::string(1 << 20, 'x'));
  startDatabase();
  EXPECT_EQ(Told::kOld, countInDatabase());
  EXPECT_EQ(databaseOf(1), textOf(kDatabase));
  EXPECT_EQ(0U, strays());
  std::filesystem::remove("qos/filler");
  EXPECT_EQ(Told::kNew, countInDatabase());
  EXPECT_EQ(2, countedInDatabase());
  EXPECT_EQ(0, umount("qos"));
}

}  // namespace
