// The states of a slot: every transition with its answer and its lines, and who is refused.
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

// What the event answers, and the lines of its operation, whose name is "op" in them.
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

// What was before, the event, the file; then its answer, the new state, and its lines after that of
// the start.
const std::tuple<const char*, const char*, const char*, const char*, LOCALDB_STATE_T, const char*>
    kTransitions[] = {
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
        {"lock no", "save", kFreshFile, "2", LDB_ACCESSIBLE,
         "DEBUG: op: I am not in locked state\n"},
        {"lock ", "unlock", kFreshFile, "0", LDB_ACCESSIBLE, ""},
        {"lock ", "save", kFreshFile, "0", LDB_NOT_INITIALIZED, kSaving},
        {"lock ", "save", "{", "2", LDB_NOT_INITIALIZED, kSaving},
};

TEST_F(SlotTest, MovesAsTheTableSays) {
  for (const auto& [before, event, text, answer, to, lines] : kTransitions) {
    SCOPED_TRACE(testing::Message() << before << " then " << event << " on " << text);
    LocalDbCtrl::init();
    const std::string file = folder_.file("wifi/wifi.ldb", text);
    if (text[0] == '\0') {
      std::filesystem::remove(file);
    }
    if (before[0] != '\0') {
      answerTo(before);
    }
    std::string expected = event[0] == 'l' ? "DEBUG: op: start" : "DEBUG: op: apiT=1";
    expected += " state=" + std::to_string(stateOf(kWifi)) + "\n" + lines;
    EXPECT_EQ(told(event), std::pair(std::string(answer), expected));
    EXPECT_EQ(stateOf(kWifi), to);
    EXPECT_EQ(LocalDbCtrl::getDBByKey("default")->localdb[kWifi] != nullptr,
              to != LDB_NOT_INITIALIZED);
    // Nothing stays blocked, whatever the answer was.
    folder_.file("wifi/wifi.ldb", kFreshFile);
    answerTo("unlock");
    Holder(kWifi, "default").end([] { return answerTo("unlock"); });
  }
}

TEST_F(SlotTest, WritesOnlyWhatIsSaved) {
  ASSERT_TRUE(locked(kWifi, "default", 1));
  EXPECT_EQ(answerTo("unlock"), "0");
  EXPECT_EQ(fileHolds(kWifi, "count"), 0);
  TreeMapObject* const radios = LocalDbCtrl::lockDbObject(kWifi, "radios", "default");
  radios->set("channel", 11);
  delete radios;
  EXPECT_EQ(answerTo("save"), "0");
  EXPECT_EQ(fileHolds(kWifi, "count"), 1) << "the next save writes what unlock kept";
  EXPECT_EQ(fileHolds(kWifi, "radios.channel"), 11);
  ASSERT_TRUE(locked(kWifi, "default", 2));
  BEConfig::DATA_LOCATION = "missing";
  EXPECT_EQ(answerTo("save"), "2") << "and the changes are lost";
  BEConfig::DATA_LOCATION = ".";
  EXPECT_EQ(stateOf(kWifi), LDB_NOT_INITIALIZED);
  EXPECT_EQ(fileHolds(kWifi, "count"), 1);
}

TEST_F(SlotTest, RefusesWhatNamesNoSlot) {
  EXPECT_EQ(linesOf([] {
              LocalDbCtrl::lockDbObject(8, "", "default");
              LocalDbCtrl::lockDbObject(kWifi, nullptr, "default");
              LocalDbCtrl::unlockDbObject(8, "default");
            }),
            "ERROR: lockDbObject: there is no area 8\n"
            "ERROR: lockDbObject: path is NULL\n"
            "ERROR: unlockDbObject: there is no area 8\n");
  LocalDbCtrl::removeDB("default");
  for (const char* event : {"lock ", "save", "unlock"}) {
    EXPECT_EQ(told(event).second, "ERROR: op: there is no database handler\n");
  }
}

// The handler's fields are the backend's to change, too.
TEST_F(SlotTest, SaysWhatIsWrongWithIt) {
  const std::tuple<const char*, bool, const char*> kCases[] = {
      {"save", false, "DEBUG: op: I am not in locked state\n"},
      {"unlock", false, "WARN: op: I am not in locked state\n"},
      {"save", true, "DEBUG: op: there is something wrong, I am is not initialized already!\n"},
      {"unlock", true, "ERROR: op: there is something wrong, I am is not initialized already!\n"},
  };
  LOCALDB_HANDLER* const handler = LocalDbCtrl::getDBByKey("default");
  for (const auto& [event, isEmptied, line] : kCases) {
    ASSERT_EQ(answerTo("lock "), "handle");
    if (isEmptied) {
      delete std::exchange(handler->localdb[kWifi], nullptr);
    } else {
      handler->state[kWifi] = LDB_ACCESSIBLE;
    }
    const std::string state = isEmptied ? "2" : "1";
    EXPECT_EQ(told(event),
              std::pair(std::string("2"), "DEBUG: op: apiT=1 state=" + state + "\n" + line));
    EXPECT_EQ(stateOf(kWifi), isEmptied ? LDB_NOT_INITIALIZED : LDB_ACCESSIBLE) << line;
  }
}

TEST_F(SlotTest, IsOutOfReachForStrangers) {
  Holder holder(kWifi, "default", 7);
  EXPECT_EQ(answerTo("lock "), "null");
  EXPECT_EQ(answerTo("save"), "2");
  EXPECT_EQ(answerTo("unlock", "no such session"), "2");
  EXPECT_EQ(stateOf(kWifi), LDB_LOCKED);
  LocalDbCtrl::cloneNewDB("s");
  EXPECT_EQ(answerTo("lock ", "s"), "handle") << "a slot of its own";
  EXPECT_EQ(answerTo("unlock", "s"), "0");
  EXPECT_EQ(holder.end([] { return answerTo("save"); }), "0");
  EXPECT_EQ(fileHolds(kWifi, "count"), 7);
}

// A locker that has seen the slot free may lose it to another; it must not wait for that one. And
// it sleeps while it waits.
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
  EXPECT_EQ(loser.wait_for(milliseconds(200)), std::future_status::timeout);
  __atomic_store_n(&state, LDB_LOCKED, __ATOMIC_RELEASE);
  EXPECT_EQ(loser.get(), "null");
  EXPECT_LT(looks, 20 + (std::chrono::steady_clock::now() - start) / milliseconds(10));
  __atomic_store_n(&state, LDB_NOT_INITIALIZED, __ATOMIC_RELEASE);
  pthread_mutex_unlock(&mutex);
}

// One that comes while another waits does not get ahead of it, though the slot is free.
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
  EXPECT_EQ(answerTo("lock "), "null");
  answerTo("unlock");
  isOver.set_value();
  EXPECT_EQ(first.get(), "handle0");
}

// Who waits is woken when a locker that was loading leaves or becomes the holder, and a removal
// when the last save is written: each round hangs without.
TEST_F(SlotTest, WakesWhoWaits) {
  alarm(60);
  const EndlessNaps noNaps;
  folder_.file("wifi/wifi.ldb", R"({"filler":")" + std::string(500'000, 'x') + R"("})");
  for (int round = 0; round < 50; ++round) {
    std::atomic<bool> isAnswered{false};
    inThreads(2, [&isAnswered](unsigned int thread) {
      if (thread == 0) {
        EXPECT_EQ(answerTo("lock no"), "null");
        isAnswered = true;
      } else {
        EXPECT_EQ(answerTo("lock "), "handle");
        while (!isAnswered) {
          std::this_thread::yield();
        }
        EXPECT_EQ(answerTo("save"), "0");
      }
    });
    LocalDbCtrl::cloneNewDB("s");
    auto held = std::make_optional<SlowFlush>(SlowFlush::kHeld);
    Holder saver(kWifi, "s");
    auto saving = std::async(std::launch::async, [&saver] {
      EXPECT_EQ(saver.end([] { return answerTo("save", "s"); }), "0");
    });
    SlowFlush::waitForOne();
    auto removal = std::async(std::launch::async, [] { LocalDbCtrl::removeDB("s"); });
    usleep(1000);
    held.reset();
  }
  alarm(0);
}

// The request to cancel is there before the operation begins and takes effect when it has ended.
TEST_F(SlotTest, IsFinishedByAThreadThatIsCancelled) {
  LOCALDB_HANDLER& handler = *LocalDbCtrl::getDBByKey("default");
  pthread_mutex_lock(&handler.mutex[API_QOS]);
  const std::function<void()> operations[] = {
      [] { EXPECT_EQ(LocalDbCtrl::cloneNewDB("s"), 1); },
      [] { EXPECT_TRUE(locked(kWifi, "default") && answerTo("save") == "0"); },
      [] { EXPECT_EQ(answerTo("lock ", "default", API_QOS), "null") << "waits for a refusal"; },
      [] { EXPECT_EQ(LocalDbCtrl::removeDB("s"), 1); },
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
    ASSERT_EQ(pthread_create(&thread, nullptr, run, &work), 0);
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

// What a save of a number or word makes can be loaded, though nothing stands behind it in the file.
TEST_F(SlotTest, HoldsWhateverValueTheFileDoes) {
  for (const char* const root : {"7", "true", "-1.5", "\"x\""}) {
    LocalDbCtrl::init();
    folder_.file("wifi/wifi.ldb", std::string(root) + "\n");
    for (const char* const ending : {"save", "save"}) {
      EXPECT_EQ(plain(*LocalDbCtrl::lockDbObject(kWifi, "", "default")), root);
      EXPECT_EQ(answerTo(ending), "0") << root;
    }
  }
}

}  // namespace
