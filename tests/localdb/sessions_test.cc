// Sessions: which handler a key names, and what becomes of a handler that is removed while in use.
#include <chrono>
#include <optional>
#include <sstream>
#include <tuple>

#include "tests/localdb/database_fixture.h"
#include "tests/localdb/held_calls.h"

namespace {

using SessionsTest = DatabaseTest;
constexpr unsigned int kWifi = API_WIFI;
constexpr char kSession[] = "a-session-key-that-is-longer-than-a-small-string";
constexpr char kLockState[] = "ERROR: Local DB is in Lock state, cannot be destroyed";

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST_F(SessionsTest, NameTheirHandlerOrTheDefault) {
  LOCALDB_HANDLER* const usual = LocalDbCtrl::getDBByKey("default");
  EXPECT_EQ(linesOf([] { LocalDbCtrl::getDBByKey("default"); }), "");
  EXPECT_EQ(linesOf([] { LocalDbCtrl::getDBByKey(nullptr); }),
            "ERROR: getDBByKey: sessionKey is NULL, return the default controller\n");
  EXPECT_EQ(linesOf([] { LocalDbCtrl::getDBByKey("s"); }),
            "ERROR: getDBByKey: Cannot found key s, return the default controller\n");
  EXPECT_EQ(LocalDbCtrl::getDBByKey(nullptr), usual);
  for (const std::string& key : {std::string(), std::string("s"), std::string(1000, 'k')}) {
    SCOPED_TRACE(key);
    EXPECT_EQ(LocalDbCtrl::getDBByKey(key.c_str()), usual);
    LocalDbCtrl::cloneNewDB(key.c_str());
    EXPECT_NE(LocalDbCtrl::getDBByKey(key.c_str()), usual);
    LocalDbCtrl::removeDB(key.c_str());
    EXPECT_EQ(LocalDbCtrl::getDBByKey(key.c_str()), usual);
  }
}

TEST_F(SessionsTest, AreMadeFromTheFilesAndRemoved) {
  std::filesystem::remove(folder_ / "qos/qos.ldb");
  std::string made = "DEBUG: Local DB handler constructor\n";
  std::string removed = "DEBUG: Local DB handler destructor\n";
  for (int area = API_GATEWAY; area <= API_MISC; ++area) {
    const bool isMissing = area == API_QOS;
    made += isMissing ? "WARN: cloneNewDB: Cannot load database from ./qos/qos.ldb\n"
                      : "DEBUG: cloneNewDB: Initialized local database for api type " +
                            std::to_string(area) + "\n";
    removed += isMissing ? "" : "DEBUG: ~TreeMapObject: this=PTR\nDEBUG:      release jobj=PTR\n";
  }
  const std::string begun = made.substr(0, made.find("\n") + 1);
  EXPECT_EQ(linesOf(LocalDbCtrl::init), begun + removed.substr(0, removed.find("\n") + 1))
      << "nothing is held";
  made += "DEBUG: cloneNewDB: new handler created for session s\n";
  const std::tuple<int (*)(const char*), const char*, int, std::string> kRows[] = {
      {LocalDbCtrl::cloneNewDB, "s", 1, made},
      {LocalDbCtrl::cloneNewDB, "s", 0,
       "DEBUG: cloneNewDB: session DB is already for key s, something weird\n"},
      {LocalDbCtrl::cloneNewDB, nullptr, 0,
       "WARN: cloneNewDB: sessionKey is NULL, nothing to be created\n"},
      {LocalDbCtrl::removeDB, "s", 1, removed},
      {LocalDbCtrl::removeDB, "s", 1, "ERROR: removeDB: Cannot found key s\n"},
      {LocalDbCtrl::removeDB, nullptr, 1,
       "WARN: removeDB: sessionKey is NULL, nothing to be removed\n"},
  };
  for (const auto& [operation, key, result, lines] : kRows) {
    CapturedLog log;
    EXPECT_EQ(operation(key), result) << lines;
    EXPECT_EQ(log.text(), lines);
  }
}

// Removal waits for the holder, be it of the first or the last slot, and says nothing. The holder
// ends its lock on the handler that it locked: whatever the key names by then, and without
// disturbing the default handler that another thread holds.
TEST_F(SessionsTest, OutliveTheirKeyWhileHeld) {
  for (const auto& [area, ending, isMadeAgain] : {std::tuple(API_GATEWAY, "save", false),
                                                  {API_MISC, "save", true},
                                                  {API_GATEWAY, "unlock", true},
                                                  {API_MISC, "unlock", false}}) {
    SCOPED_TRACE(testing::Message() << area << ending << (isMadeAgain ? " made again" : ""));
    folder_.file(std::string(API_DATA_DIR[area]) + "/" + API_DATA_DIR[area] + ".ldb", kFreshFile);
    LocalDbCtrl::cloneNewDB(kSession);
    ASSERT_TRUE(locked(area, kSession, 7));
    Holder other(area, "default");
    CapturedLog log({LOG_ERROR});
    auto removal = std::async(std::launch::async, [] { LocalDbCtrl::removeDB(kSession); });
    while (LocalDbCtrl::getDBByKey(kSession) != LocalDbCtrl::getDBByKey("default")) {
      std::this_thread::yield();
    }
    EXPECT_EQ(isMadeAgain ? LocalDbCtrl::cloneNewDB(kSession) : 1, 1);
    EXPECT_EQ(removal.wait_for(std::chrono::milliseconds(10)), std::future_status::timeout);
    EXPECT_EQ(answerTo(ending, kSession, area), "0");
    removal.get();
    EXPECT_FALSE(log.has(kLockState));
    EXPECT_EQ(fileHolds(area, "count"), ending == std::string("save") ? 7 : 0);
    EXPECT_EQ(answerTo(ending, kSession, area), "2") << "there was one lock";
    EXPECT_EQ(stateOf(area), LDB_LOCKED);
    EXPECT_EQ(other.end([area = area] { return answerTo("unlock", nullptr, area); }), "0");
    LocalDbCtrl::removeDB(kSession);
  }
}

// One thread, one area, several holds. Each lock that gets a slot writes its number into it; what a
// save answers is the number in the file then. An ending means the last lock under its key; without
// one the slot that the key names, under whatever key this thread holds it.
TEST_F(SessionsTest, EndTheLockThatWasTakenUnderTheirKey) {
  const std::pair<const char*, const char*> kRows[] = {
      {"lock default, clone a, lock a, save default, save a", "1 2 1 2"},
      {"lock default, clone a, lock a, remove a, save a, save default", "1 2 2 1"},
      {"lock default, clone a, lock a, remove a, unlock a, save default", "1 2 0 1"},
      {"lock default, clone a, lock a, remove a, clone a, save a, save default", "1 2 2 1"},
      {"lock a, clone a, save a, save a", "1 1 no"},
      {"lock a, clone a, lock a, save a, save a, save a", "1 2 2 1 no"},
      {"lock a, clone a, lock a, remove a, save a, save a", "1 2 2 1"},
      {"clone a, lock a, remove a, lock a, save a, save a", "1 2 2 1"},
      {"clone a, lock a, remove a, clone a, lock a, save a, save a", "1 2 2 1"},
      {"clone a, lock a, remove a, lock a, clone a, lock a, save a, save a, save a", "1 2 3 3 2 1"},
      {"lock -, lock default, lock a, save -", "1 no no 1"},
      {"lock -, init, lock -, save -, save -", "1 2 2 1"},
      {"lock -, save default", "1 1"},
      {"lock a, save -", "1 1"},
      {"lock a, save b", "1 1"},
      {"lock default, init, lock a, save a, save a, save default", "1 2 2 no 1"},
      {"lock default, init, save a, save default", "1 no 1"},
      {"clone a, lock a, save default, save a", "1 no 1"},
      {"clone a, lock a, lock default, remove default, save -, save default, save a", "1 2 no 2 1"},
      {"clone default, lock default, remove default, save a, save default", "1 no 1"},
  };
  for (const auto& [events, answers] : kRows) {
    LocalDbCtrl::init();
    folder_.file("wifi/wifi.ldb", kFreshFile);
    std::istringstream all(replaced(events, ",", ""));
    std::string heard;
    int locks = 0;
    for (std::string event, name; all >> event;) {
      const char* const key =
          event != "init" && all >> name && name != "-" ? name.c_str() : nullptr;
      if (event == "init") {
        LocalDbCtrl::init();
      } else if (event == "clone") {
        LocalDbCtrl::cloneNewDB(key);
      } else if (event == "remove") {
        LocalDbCtrl::removeDB(key);
      } else if (event == "lock") {
        const bool isLocked = locked(kWifi, key, locks + 1);
        heard += isLocked ? " " + std::to_string(++locks) : " no";
      } else {
        heard +=
            answerTo(event, key) != "0" ? " no" : " " + std::to_string(fileHolds(kWifi, "count"));
      }
    }
    EXPECT_EQ(heard.substr(1), answers) << events;
  }
}

TEST_F(SessionsTest, AreFreedByTheirLastHolder) {
  LocalDbCtrl::cloneNewDB("s");
  ASSERT_TRUE(locked(API_QOS, "s", 7));
  ASSERT_TRUE(locked(kWifi, nullptr, 8));
  // Its own holder removes it, without waiting for itself.
  EXPECT_TRUE(contains(linesOf([] { LocalDbCtrl::removeDB("s"); }), kLockState));
  EXPECT_TRUE(contains(linesOf([] { LocalDbCtrl::init(); }), kLockState));
  EXPECT_EQ(LocalDbCtrl::controllers.size(), 1U);
  ASSERT_TRUE(locked(kWifi, nullptr, 9)) << "the new default handler's own slot";
  EXPECT_EQ(answerTo("unlock", nullptr), "0");
  EXPECT_EQ(stateOf(kWifi), LDB_ACCESSIBLE) << "what the key names now comes first";
  EXPECT_EQ(answerTo("save", nullptr), "0");
  EXPECT_EQ(fileHolds(kWifi, "count"), 8);
  EXPECT_TRUE(contains(linesOf([] { LocalDbCtrl::unlockDbObject(API_QOS, "s"); }), "release jobj"))
      << "nobody else can free what unlock kept";
}

// A save writes without the mutex. Lockers are refused meanwhile; a removal waits, without a line,
// so that the next handler of the session reads what was saved.
TEST_F(SessionsTest, AreRemovedWhenTheirSavesAreWritten) {
  LocalDbCtrl::cloneNewDB("s");
  auto held = std::make_optional<SlowFlush>(SlowFlush::kHeld);
  Holder saver(kWifi, "s", 7);
  CapturedLog log({LOG_ERROR});
  auto saving = std::async(std::launch::async,
                           [&saver] { return saver.end([] { return answerTo("save", "s"); }); });
  SlowFlush::waitForOne();
  EXPECT_EQ(answerTo("lock ", "s"), "null");
  EXPECT_EQ(answerTo("lock ", "s", API_QOS), "handle");
  EXPECT_EQ(answerTo("unlock", "s", API_QOS), "0");
  auto removal = std::async(std::launch::async, [] {
    LocalDbCtrl::removeDB("s");
    return LocalDbCtrl::cloneNewDB("s");
  });
  EXPECT_EQ(removal.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  held.reset();
  EXPECT_EQ(removal.get(), 1);
  Handle seen(LocalDbCtrl::lockDbObject(kWifi, "count", "s"));
  EXPECT_EQ(plain(*seen), "7");
  EXPECT_EQ(saving.get(), "0");
  EXPECT_EQ(answerTo("unlock", "s"), "0");
  EXPECT_FALSE(log.has(kLockState));
}

// A state that no thread's lock, save or unlock accounts for is not waited for.
TEST_F(SessionsTest, AreLeftInAStateThatNobodyEnds) {
  LocalDbCtrl::cloneNewDB("s");
  __atomic_store_n(&LocalDbCtrl::getDBByKey("s")->state[kWifi], LDB_LOCKED, __ATOMIC_RELEASE);
  const Handle left(LocalDbCtrl::getDBByKey("s")->localdb[kWifi]);
  EXPECT_EQ(linesOf([] { LocalDbCtrl::removeDB("s"); }, {LOG_ERROR}), kLockState);
}

TEST(HandlerTest, StandsAlone) {
  const LOCALDB_HANDLER handler;
  for (unsigned int area = 0; area < std::size(handler.state); ++area) {
    EXPECT_EQ(handler.state[area], LDB_NOT_INITIALIZED);
    EXPECT_EQ(handler.localdb[area], nullptr);
  }
}

}  // namespace
