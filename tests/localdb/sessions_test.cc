// Sessions: which handler a key names, and what happens to a handler that is removed while in use.
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
  EXPECT_EQ("", linesOf([] { LocalDbCtrl::getDBByKey("default"); }));
  EXPECT_EQ("ERROR: getDBByKey: sessionKey is NULL, return the default controller\n",
            linesOf([] { LocalDbCtrl::getDBByKey(nullptr); }));
  EXPECT_EQ("ERROR: getDBByKey: Cannot found key s, return the default controller\n",
            linesOf([] { LocalDbCtrl::getDBByKey("s"); }));
  EXPECT_EQ(usual, LocalDbCtrl::getDBByKey(nullptr));
  for (const std::string& key : {std::string(), std::string("s"), std::string(1000, 'k')}) {
    SCOPED_TRACE(key);
    EXPECT_EQ(usual, LocalDbCtrl::getDBByKey(key.c_str()));
    LocalDbCtrl::cloneNewDB(key.c_str());
    EXPECT_NE(usual, LocalDbCtrl::getDBByKey(key.c_str()));
    LocalDbCtrl::removeDB(key.c_str());
    EXPECT_EQ(usual, LocalDbCtrl::getDBByKey(key.c_str()));
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
  EXPECT_EQ(begun + removed.substr(0, removed.find("\n") + 1), linesOf(LocalDbCtrl::init))
      << "nothing is held";
  made += "DEBUG: cloneNewDB: new handler created for session s\n";
  const struct {
    int (*operation)(const char*);
    const char* key;
    int result;
    std::string lines;
  } rows[] = {
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
  for (const auto& row : rows) {
    CapturedLog log;
    EXPECT_EQ(row.result, row.operation(row.key)) << row.lines;
    EXPECT_EQ(row.lines, log.text());
  }
}

// A session keeps eight databases in memory for as long as it lives.
TEST_F(SessionsTest, ReserveNoRoomForMembersToCome) {
  LocalDbCtrl::cloneNewDB("s");
  for (const TreeMapObject* database : LocalDbCtrl::getDBByKey("s")->localdb) {
    EXPECT_GT(json_object_get_object(parse(kFreshFile).get())->size,
              json_object_get_object(database->jobj)->size);
    EXPECT_EQ(plain(parse(kFreshFile).get()), plain(*database));
  }
}

// A removal waits for the holder of any slot, the first or the last, without a line. The holder
// ends its lock on the handler that it locked, whatever the key names by then, and does not disturb
// the default handler, which another thread holds.
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
    EXPECT_EQ(1, isMadeAgain ? LocalDbCtrl::cloneNewDB(kSession) : 1);
    EXPECT_EQ(std::future_status::timeout, removal.wait_for(std::chrono::milliseconds(10)));
    EXPECT_EQ("0", answerTo(ending, kSession, area));
    removal.get();
    EXPECT_FALSE(log.has(kLockState));
    EXPECT_EQ(ending == std::string("save") ? 7 : 0, fileHolds(area, "count"));
    EXPECT_EQ("2", answerTo(ending, kSession, area)) << "there was one lock";
    EXPECT_EQ(LDB_LOCKED, stateOf(area));
    EXPECT_EQ("0", other.end([area = area] { return answerTo("unlock", nullptr, area); }));
    LocalDbCtrl::removeDB(kSession);
  }
}

// One thread takes several holds on one area. Each lock that gets a slot writes its number into it;
// a save or unlock is shown by the number that the file then has, or "no". It ends the last lock
// under its key; without one, the lock of the slot that the key names, whatever key it was under.
TEST_F(SessionsTest, EndTheLockThatWasTakenUnderTheirKey) {
  const std::pair<const char*, const char*> rows[] = {
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
  for (const auto& [events, answers] : rows) {
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
    EXPECT_EQ(answers, heard.substr(1)) << events;
  }
}

TEST_F(SessionsTest, AreFreedByTheirLastHolder) {
  LocalDbCtrl::cloneNewDB("s");
  ASSERT_TRUE(locked(API_QOS, "s", 7));
  ASSERT_TRUE(locked(kWifi, nullptr, 8));
  // Its own holder removes it, without waiting for itself.
  EXPECT_TRUE(contains(linesOf([] { LocalDbCtrl::removeDB("s"); }), kLockState));
  EXPECT_TRUE(contains(linesOf([] { LocalDbCtrl::init(); }), kLockState));
  EXPECT_EQ(1U, LocalDbCtrl::controllers.size());
  ASSERT_TRUE(locked(kWifi, nullptr, 9)) << "the new default handler's own slot";
  EXPECT_EQ("0", answerTo("unlock", nullptr));
  EXPECT_EQ(LDB_ACCESSIBLE, stateOf(kWifi)) << "what the key names now comes first";
  EXPECT_EQ("0", answerTo("save", nullptr));
  EXPECT_EQ(8, fileHolds(kWifi, "count"));
  EXPECT_TRUE(contains(linesOf([] { LocalDbCtrl::unlockDbObject(API_QOS, "s"); }), "release jobj"))
      << "nobody else can free what unlock kept";
}

// A save writes without the mutex. Meanwhile lockers are refused, and a removal waits without a
// line, so that the session's next handler reads what was saved.
TEST_F(SessionsTest, AreRemovedWhenTheirSavesAreWritten) {
  LocalDbCtrl::cloneNewDB("s");
  auto held = std::make_optional<SlowFlush>(SlowFlush::kHeld);
  Holder saver(kWifi, "s", 7);
  CapturedLog log({LOG_ERROR});
  auto saving = std::async(std::launch::async,
                           [&saver] { return saver.end([] { return answerTo("save", "s"); }); });
  SlowFlush::waitForOne();
  EXPECT_EQ("null", answerTo("lock ", "s"));
  EXPECT_EQ("handle", answerTo("lock ", "s", API_QOS));
  EXPECT_EQ("0", answerTo("unlock", "s", API_QOS));
  auto removal = std::async(std::launch::async, [] {
    LocalDbCtrl::removeDB("s");
    return LocalDbCtrl::cloneNewDB("s");
  });
  EXPECT_EQ(std::future_status::timeout, removal.wait_for(std::chrono::milliseconds(20)));
  held.reset();
  EXPECT_EQ(1, removal.get());
  Handle seen(LocalDbCtrl::lockDbObject(kWifi, "count", "s"));
  EXPECT_EQ("7", plain(*seen));
  EXPECT_EQ("0", saving.get());
  EXPECT_EQ("0", answerTo("unlock", "s"));
  EXPECT_FALSE(log.has(kLockState));
}

// A removal does not wait for a state that the program wrote by its own hand: nobody would end it.
TEST_F(SessionsTest, AreLeftInAStateThatNobodyEnds) {
  LocalDbCtrl::cloneNewDB("s");
  hearth::releaseStore(LocalDbCtrl::getDBByKey("s")->state[kWifi], LDB_LOCKED);
  const Handle left(LocalDbCtrl::getDBByKey("s")->localdb[kWifi]);
  EXPECT_EQ(kLockState, linesOf([] { LocalDbCtrl::removeDB("s"); }, {LOG_ERROR}));
}

TEST(HandlerTest, StandsAlone) {
  const LOCALDB_HANDLER handler;
  for (unsigned int area = 0; area < std::size(handler.state); ++area) {
    EXPECT_EQ(LDB_NOT_INITIALIZED, handler.state[area]);
    EXPECT_EQ(nullptr, handler.localdb[area]);
  }
}

}  // namespace
