// The states of a slot: every transition with its answer and its lines, and whom a slot refuses.
#include <sys/resource.h>

#include <chrono>
#include <optional>
#include <sstream>
#include <tuple>

#include "tests/localdb/database_fixture.h"
#include "tests/localdb/held_calls.h"

namespace {

using SlotTest = DatabaseTest;
constexpr unsigned int kWifi = API_WIFI;

// The answer to the event, and the lines of its operation, with "op" in place of its name.
std::pair<std::string, std::string> told(const std::string& event) {
  std::string answer;
  std::istringstream lines(linesOf([&] { answer = answerTo(event); }));
  const std::string operation = event.substr(0, event.find(' ')) + "DbObject: ";
  std::string kept;
  for (std::string line; std::getline(lines, line);) {
    kept += line.find(operation) != std::string::npos ? line + "\n" : "";
  }
  return {answer, replaced(kept, operation, "op: ")};
}

constexpr char kSaving[] = "DEBUG: op: type=1 save object PTR to file ./wifi/wifi.ldb\n";
constexpr char kLoaded[] = "DEBUG: op: Initialized local database for api type 1\n";
constexpr char kMissing[] =
    "WARN: op: Cannot load database from ./wifi/wifi.ldb\n"
    "ERROR: op: There is something wrong! localdb 1 is null in accessable state 0\n";

struct Transition {
  const char* before;  // an event that leads to the state that the row starts from; "" for 0
  const char* event;
  const char* text;  // of the file; "" when there is none
  const char* answer;
  LOCALDB_STATE_T to;
  const char* lines;  // of the event, after the line of its start
};

TEST_F(SlotTest, MovesAsTheTableSays) {
  const Transition rows[] = {
      {"", "lock ", kFreshFile, "handle", LDB_LOCKED, kLoaded},
      {"", "lock radios", kFreshFile, "handle", LDB_LOCKED, kLoaded},
      {"", "lock no", kFreshFile, "null", LDB_ACCESSIBLE, kLoaded},
      {"", "lock ", "", "null", LDB_NOT_INITIALIZED, kMissing},
      {"", "lock ", "{", "handle", LDB_LOCKED, kLoaded},
      {"", "lock no", "{", "null", LDB_ACCESSIBLE, kLoaded},
      {"", "save", kFreshFile, "2", LDB_NOT_INITIALIZED, "DEBUG: op: I am not in locked state\n"},
      {"lock no", "lock radios", kFreshFile, "handle", LDB_LOCKED, ""},
      {"lock no", "lock no", kFreshFile, "null", LDB_ACCESSIBLE, ""},
      {"lock no", "unlock", kFreshFile, "2", LDB_ACCESSIBLE,
       "WARN: op: I am not in locked state\n"},
      {"lock ", "lock ", kFreshFile, "null", LDB_LOCKED,
       "WARN: op: failed to access local database (1) in writing state\n"},
      {"lock no", "save", kFreshFile, "2", LDB_ACCESSIBLE, "DEBUG: op: I am not in locked state\n"},
      {"lock ", "unlock", kFreshFile, "0", LDB_ACCESSIBLE, ""},
      {"lock ", "save", kFreshFile, "0", LDB_NOT_INITIALIZED, kSaving},
      {"lock ", "save", "{", "2", LDB_NOT_INITIALIZED, kSaving},
  };
  for (const Transition& row : rows) {
    SCOPED_TRACE(testing::Message() << row.before << " then " << row.event << " on " << row.text);
    LocalDbCtrl::init();
    const std::string file = folder_.file("wifi/wifi.ldb", row.text);
    if (row.text[0] == '\0') {
      std::filesystem::remove(file);
    }
    if (row.before[0] != '\0') {
      answerTo(row.before);
    }
    std::string expected = row.event[0] == 'l' ? "DEBUG: op: start" : "DEBUG: op: apiT=1";
    expected += " state=" + std::to_string(stateOf(kWifi)) + "\n" + row.lines;
    EXPECT_EQ(std::pair(std::string(row.answer), expected), told(row.event));
    EXPECT_EQ(row.to, stateOf(kWifi));
    EXPECT_EQ(row.to != LDB_NOT_INITIALIZED,
              LocalDbCtrl::getDBByKey("default")->localdb[kWifi] != nullptr);
    // Whatever the answer was, another thread can have the slot afterwards.
    folder_.file("wifi/wifi.ldb", kFreshFile);
    answerTo("unlock");
    Holder(kWifi, "default").end([] { return answerTo("unlock"); });
  }
}

TEST_F(SlotTest, WritesOnlyWhatIsSaved) {
  ASSERT_TRUE(locked(kWifi, "default", 1));
  EXPECT_EQ("0", answerTo("unlock"));
  EXPECT_EQ(0, fileHolds(kWifi, "count"));
  TreeMapObject* const radios = LocalDbCtrl::lockDbObject(kWifi, "radios", "default");
  radios->set("channel", 11);
  delete radios;
  EXPECT_EQ("0", answerTo("save"));
  EXPECT_EQ(1, fileHolds(kWifi, "count")) << "the next save writes what unlock kept";
  EXPECT_EQ(11, fileHolds(kWifi, "radios.channel"));
  ASSERT_TRUE(locked(kWifi, "default", 2));
  BEConfig::DATA_LOCATION = "missing";
  EXPECT_EQ("2", answerTo("save")) << "and the changes are lost";
  BEConfig::DATA_LOCATION = ".";
  EXPECT_EQ(LDB_NOT_INITIALIZED, stateOf(kWifi));
  EXPECT_EQ(1, fileHolds(kWifi, "count"));
}

TEST_F(SlotTest, RefusesWhatNamesNoSlot) {
  EXPECT_EQ(
      "ERROR: lockDbObject: there is no area 8\n"
      "ERROR: lockDbObject: path is NULL\n"
      "ERROR: unlockDbObject: there is no area 8\n",
      linesOf([] {
        LocalDbCtrl::lockDbObject(8, "", "default");
        LocalDbCtrl::lockDbObject(kWifi, nullptr, "default");
        LocalDbCtrl::unlockDbObject(8, "default");
      }));
  LocalDbCtrl::removeDB("default");
  for (const char* event : {"lock ", "save", "unlock"}) {
    EXPECT_EQ("ERROR: op: there is no database handler\n", told(event).second);
  }
}

// A backend can change the handler's fields, and must then be told what is wrong.
TEST_F(SlotTest, SaysWhatIsWrongWithIt) {
  const std::tuple<const char*, bool, const char*> rows[] = {
      {"save", false, "DEBUG: op: I am not in locked state\n"},
      {"unlock", false, "WARN: op: I am not in locked state\n"},
      {"save", true, "DEBUG: op: there is something wrong, I am is not initialized already!\n"},
      {"unlock", true, "ERROR: op: there is something wrong, I am is not initialized already!\n"},
  };
  LOCALDB_HANDLER* const handler = LocalDbCtrl::getDBByKey("default");
  for (const auto& [event, isEmptied, line] : rows) {
    ASSERT_EQ("handle", answerTo("lock "));
    if (isEmptied) {
      delete std::exchange(handler->localdb[kWifi], nullptr);
    } else {
      handler->state[kWifi] = LDB_ACCESSIBLE;
    }
    const std::string state = isEmptied ? "2" : "1";
    EXPECT_EQ(std::pair(std::string("2"), "DEBUG: op: apiT=1 state=" + state + "\n" + line),
              told(event));
    EXPECT_EQ(isEmptied ? LDB_NOT_INITIALIZED : LDB_ACCESSIBLE, stateOf(kWifi)) << line;
  }
}

TEST_F(SlotTest, IsOutOfReachForStrangers) {
  Holder holder(kWifi, "default", 7);
  EXPECT_EQ("null", answerTo("lock "));
  EXPECT_EQ("2", answerTo("save"));
  EXPECT_EQ("2", answerTo("unlock", "no such session"));
  EXPECT_EQ(LDB_LOCKED, stateOf(kWifi));
  LocalDbCtrl::cloneNewDB("s");
  EXPECT_EQ("handle", answerTo("lock ", "s")) << "a slot of its own";
  EXPECT_EQ("0", answerTo("unlock", "s"));
  EXPECT_EQ("0", holder.end([] { return answerTo("save"); }));
  EXPECT_EQ(7, fileHolds(kWifi, "count"));
}

// A locker that has seen the slot free may lose it to another. It must not wait for that one; and
// until it is decided it must sleep, not spin.
TEST_F(SlotTest, TurnsAwayWhoLosesTheRace) {
  using std::chrono::milliseconds;
  pthread_mutex_t& mutex = LocalDbCtrl::getDBByKey("default")->mutex[kWifi];
  LOCALDB_STATE_T& state = LocalDbCtrl::getDBByKey("default")->state[kWifi];
  pthread_mutex_lock(&mutex);  // as a locker that is loading
  long looks = 0;
  const auto start = std::chrono::steady_clock::now();
  auto loser = std::async(std::launch::async, [&looks] {
    std::string answer = answerTo("lock ");
    rusage used{};
    getrusage(RUSAGE_THREAD, &used);
    looks = used.ru_nvcsw;
    return answer;
  });
  EXPECT_EQ(std::future_status::timeout, loser.wait_for(milliseconds(200)));
  __atomic_store_n(&state, LDB_LOCKED, __ATOMIC_RELEASE);
  EXPECT_EQ("null", loser.get());
  EXPECT_LT(looks, 20 + (std::chrono::steady_clock::now() - start) / milliseconds(10));
  __atomic_store_n(&state, LDB_NOT_INITIALIZED, __ATOMIC_RELEASE);
  pthread_mutex_unlock(&mutex);
}

// A locker that comes while another waits does not get ahead of it, though the slot is free.
TEST_F(SlotTest, IsGivenToWhoCameFirst) {
  pthread_mutex_t& mutex = LocalDbCtrl::getDBByKey("default")->mutex[kWifi];
  pthread_mutex_lock(&mutex);
  std::promise<void> isOver;
  auto first = std::async(std::launch::async, [&isOver] {
    const std::string answer = answerTo("lock ");
    isOver.get_future().get();
    return answer + answerTo("unlock");
  });
  while (EndlessNaps::asleep == 0) {
    std::this_thread::yield();
  }
  pthread_mutex_unlock(&mutex);
  EXPECT_EQ("null", answerTo("lock "));
  answerTo("unlock");
  isOver.set_value();
  EXPECT_EQ("handle0", first.get());
}

// A waiting locker is woken when one that was loading leaves or becomes the holder, and a waiting
// removal when the last save is written. A wake that is missing makes a round hang.
TEST_F(SlotTest, WakesWhoWaits) {
  alarm(60);
  const EndlessNaps noNaps;
  folder_.file("wifi/wifi.ldb", R"({"filler":")" + std::string(500'000, 'x') + R"("})");
  for (int round = 0; round < 50; ++round) {
    std::atomic<bool> isAnswered{false};
    inThreads(2, [&isAnswered](unsigned int thread) {
      if (thread == 0) {
        EXPECT_EQ("null", answerTo("lock no"));
        isAnswered = true;
      } else {
        EXPECT_EQ("handle", answerTo("lock "));
        while (!isAnswered) {
          std::this_thread::yield();
        }
        EXPECT_EQ("0", answerTo("save"));
      }
    });
    LocalDbCtrl::cloneNewDB("s");
    auto held = std::make_optional<SlowFlush>(SlowFlush::kHeld);
    Holder saver(kWifi, "s");
    auto saving = std::async(std::launch::async, [&saver] {
      EXPECT_EQ("0", saver.end([] { return answerTo("save", "s"); }));
    });
    SlowFlush::waitForOne();
    auto removal = std::async(std::launch::async, [] { LocalDbCtrl::removeDB("s"); });
    usleep(1000);
    held.reset();
  }
  alarm(0);
}

// A thread that is asked to cancel before an operation begins finishes the operation first.
TEST_F(SlotTest, IsFinishedByAThreadThatIsCancelled) {
  LOCALDB_HANDLER& handler = *LocalDbCtrl::getDBByKey("default");
  pthread_mutex_lock(&handler.mutex[API_QOS]);
  const std::function<void()> operations[] = {
      [] { EXPECT_EQ(1, LocalDbCtrl::cloneNewDB("s")); },
      [] { EXPECT_TRUE(locked(kWifi, "default") && answerTo("save") == "0"); },
      [] { EXPECT_EQ("null", answerTo("lock ", "default", API_QOS)) << "waits for a refusal"; },
      [] { EXPECT_EQ(1, LocalDbCtrl::removeDB("s")); },
      [] { LocalDbCtrl::init(); },
  };
  for (const auto& operation : operations) {
    std::pair<const std::function<void()>*, std::atomic<bool>> work(&operation, false);
    const auto run = [](void* argument) -> void* {
      auto& [todo, isDone] = *static_cast<decltype(work)*>(argument);
      pthread_cancel(pthread_self());
      (*todo)();
      isDone = true;
      pthread_testcancel();
      return nullptr;
    };
    pthread_t thread{};
    ASSERT_EQ(0, pthread_create(&thread, nullptr, run, &work));
    if (&operation == &operations[2]) {
      usleep(1000);
      __atomic_store_n(&handler.state[API_QOS], LDB_LOCKED, __ATOMIC_RELEASE);
    }
    void* ended = nullptr;
    pthread_join(thread, &ended);
    EXPECT_TRUE(work.second && ended == PTHREAD_CANCELED) << &operation - operations;
    if (&operation == &operations[2]) {
      handler.state[API_QOS] = LDB_NOT_INITIALIZED;
      pthread_mutex_unlock(&handler.mutex[API_QOS]);
    }
  }
}

// A database may be a plain number or word: its file ends right behind it, and loads all the same.
TEST_F(SlotTest, HoldsWhateverValueTheFileDoes) {
  for (const char* const root : {"7", "true", "-1.5", "\"x\""}) {
    LocalDbCtrl::init();
    folder_.file("wifi/wifi.ldb", std::string(root) + "\n");
    for (const char* const ending : {"save", "save"}) {
      EXPECT_EQ(root, plain(*LocalDbCtrl::lockDbObject(kWifi, "", "default")));
      EXPECT_EQ("0", answerTo(ending)) << root;
    }
  }
}

}  // namespace
