// Sessions: which handler a key names, and what becomes of a handler that is removed while in use.
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <tuple>

#include "tests/localdb/database_fixture.h"

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

// Removal waits for the holder, who ends its lock on the handler that it locked: whatever the key
// names by then, and without disturbing the default handler that another thread holds.
TEST_F(SessionsTest, OutliveTheirKeyWhileHeld) {
  for (const char* ending : {"save", "unlock"}) {
    for (const bool isMadeAgain : {true, false}) {
      SCOPED_TRACE(testing::Message() << ending << (isMadeAgain ? " made again" : ""));
      folder_.file("wifi/wifi.ldb", kFreshFile);
      LocalDbCtrl::cloneNewDB(kSession);
      ASSERT_TRUE(locked(kWifi, kSession, 7));
      Holder other(kWifi, "default");
      auto removal = std::async(std::launch::async, [] { LocalDbCtrl::removeDB(kSession); });
      while (LocalDbCtrl::getDBByKey(kSession) != LocalDbCtrl::getDBByKey("default")) {
        std::this_thread::yield();
      }
      EXPECT_EQ(isMadeAgain ? LocalDbCtrl::cloneNewDB(kSession) : 1, 1);
      EXPECT_EQ(removal.wait_for(std::chrono::milliseconds(10)), std::future_status::timeout);
      EXPECT_EQ(answerTo(ending, kSession), "0");
      removal.get();
      EXPECT_EQ(fileHolds(kWifi, "count"), ending == std::string("save") ? 7 : 0);
      EXPECT_EQ(answerTo(ending, kSession), "2") << "there was one lock";
      EXPECT_EQ(stateOf(kWifi), LDB_LOCKED);
      EXPECT_EQ(other.end([] { return answerTo("unlock", nullptr); }), "0");
      LocalDbCtrl::removeDB(kSession);
    }
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

// A save writes without the mutex. Here it writes more than a pipe takes, and so lasts until the
// pipe is read.
TEST_F(SessionsTest, AreLeftAloneWhileASaveWrites) {
  LocalDbCtrl::cloneNewDB("s");
  LocalDbCtrl::lockDbObject(kWifi, "", "s")->set("text", std::string(100'000, 'x').c_str());
  LocalDbCtrl::unlockDbObject(kWifi, "s");
  Holder saver(kWifi, "s");
  const std::string pipe = LocalDbCtrl::getFileName(kWifi);
  std::filesystem::remove(pipe);
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  std::string locks, saved;
  const std::string lines = linesOf([&] {
    auto saving = std::async(std::launch::async,
                             [&saver] { return saver.end([] { return answerTo("save", "s"); }); });
    pollfd filling{reader, POLLIN, 0};
    poll(&filling, 1, 60'000);
    locks = answerTo("lock ", "s") + (locked(API_QOS, "s") ? " other" : "");
    LocalDbCtrl::unlockDbObject(API_QOS, "s");
    LocalDbCtrl::removeDB("s");
    char part[4096];
    while (read(reader, part, sizeof part) != 0) {
    }
    saved = saving.get();
  });
  close(reader);
  EXPECT_EQ(locks, "null other");
  EXPECT_EQ(saved, "0");
  EXPECT_TRUE(contains(lines, kLockState));
}

TEST(HandlerTest, StandsAlone) {
  const LOCALDB_HANDLER handler;
  for (unsigned int area = 0; area < std::size(handler.state); ++area) {
    EXPECT_EQ(handler.state[area], LDB_NOT_INITIALIZED);
    EXPECT_EQ(handler.localdb[area], nullptr);
  }
}

}  // namespace
