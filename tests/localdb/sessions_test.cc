// Sessions: which handler a key names, and what becomes of a handler that is removed while in use.
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

#include "tests/localdb/database_fixture.h"

namespace {

using SessionsTest = DatabaseTest;
constexpr unsigned int kWifi = API_WIFI;
constexpr char kSession[] = "a-session-key-that-is-longer-than-a-small-string";
constexpr char kLockState[] = "ERROR: Local DB is in Lock state, cannot be destroyed";

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Waits until no key names the handler any more.
void waitUntilRemoved(const char* key) {
  while (LocalDbCtrl::getDBByKey(key) != LocalDbCtrl::getDBByKey("default")) {
    std::this_thread::yield();
  }
}

TEST_F(SessionsTest, NameTheirHandlerOrTheDefault) {
  LOCALDB_HANDLER* const usual = LocalDbCtrl::getDBByKey("default");
  const std::string longKey(1000, 'k');
  EXPECT_EQ(linesOf([] { LocalDbCtrl::getDBByKey("default"); }), "");
  EXPECT_EQ(linesOf([] { LocalDbCtrl::getDBByKey(nullptr); }),
            "ERROR: getDBByKey: sessionKey is NULL, return the default controller\n");
  EXPECT_EQ(linesOf([] { LocalDbCtrl::getDBByKey("s"); }),
            "ERROR: getDBByKey: Cannot found key s, return the default controller\n");
  EXPECT_EQ(LocalDbCtrl::getDBByKey(nullptr), usual);
  for (const char* key : {"s", "", kSession, longKey.c_str()}) {
    SCOPED_TRACE(key);
    EXPECT_EQ(LocalDbCtrl::getDBByKey(key), usual);
    EXPECT_EQ(LocalDbCtrl::cloneNewDB(key), 1);
    EXPECT_NE(LocalDbCtrl::getDBByKey(key), usual);
    EXPECT_EQ(LocalDbCtrl::removeDB(key), 1);
    EXPECT_EQ(LocalDbCtrl::getDBByKey(key), usual);
  }
}

TEST_F(SessionsTest, AreMadeFromTheFilesAndRemoved) {
  removeFile(API_QOS);
  std::string loaded = "DEBUG: Local DB handler constructor\n";
  std::string emptied = "DEBUG: Local DB handler destructor\n";
  for (unsigned int area = 0; area < std::size(API_DATA_DIR); ++area) {
    const std::string number = std::to_string(area);
    if (area == API_QOS) {
      loaded += "WARN: cloneNewDB: Cannot load database from DATA/qos/qos.ldb\n";
      continue;
    }
    loaded += "DEBUG: cloneNewDB: Initialized local database for api type " + number + "\n";
    emptied += "DEBUG: ~TreeMapObject: this=PTR\nDEBUG:      release jobj=PTR\n";
  }
  loaded += "DEBUG: cloneNewDB: new handler created for session s\n";

  struct Row {
    int (*operation)(const char*);
    const char* key;
    int result;
    std::string lines;
  };
  const Row rows[] = {
      {LocalDbCtrl::cloneNewDB, "s", 1, loaded},
      {LocalDbCtrl::cloneNewDB, "s", 0,
       "DEBUG: cloneNewDB: session DB is already for key s, something weird\n"},
      {LocalDbCtrl::cloneNewDB, nullptr, 0,
       "WARN: cloneNewDB: sessionKey is NULL, nothing to be created\n"},
      {LocalDbCtrl::removeDB, "s", 1, emptied},
      {LocalDbCtrl::removeDB, "s", 1, "ERROR: removeDB: Cannot found key s\n"},
      {LocalDbCtrl::removeDB, nullptr, 1,
       "WARN: removeDB: sessionKey is NULL, nothing to be removed\n"},
  };
  for (const Row& row : rows) {
    int result = -1;
    EXPECT_EQ(linesOf([&] { result = row.operation(row.key); }), row.lines);
    EXPECT_EQ(result, row.result) << row.lines;
    if (result == 1 && row.lines == loaded) {
      EXPECT_EQ(stateOf(API_QOS, "s"), LDB_NOT_INITIALIZED);
      EXPECT_EQ(stateOf(API_MISC, "s"), LDB_ACCESSIBLE);
    }
  }
}

// Removal waits for the holder, who ends its lock on the handler that it locked: whatever the key
// names by then, and without disturbing the default handler that another thread holds.
TEST_F(SessionsTest, OutliveTheirKeyWhileHeld) {
  for (const bool saves : {true, false}) {
    for (const bool isMadeAgain : {true, false}) {
      SCOPED_TRACE(testing::Message() << "saves " << saves << " is made again " << isMadeAgain);
      writeFile(kWifi, kFreshFile);
      LocalDbCtrl::cloneNewDB(kSession);
      ASSERT_TRUE(lockAndCount(kWifi, kSession, 7));
      Thread other;
      other.run([] { ASSERT_TRUE(lockAndCount(kWifi, "default", 1)); });
      auto removal = std::async(std::launch::async, [] { LocalDbCtrl::removeDB(kSession); });
      waitUntilRemoved(kSession);
      EXPECT_EQ(isMadeAgain ? LocalDbCtrl::cloneNewDB(kSession) : 1, 1);
      EXPECT_EQ(removal.wait_for(std::chrono::milliseconds(10)), std::future_status::timeout);
      EXPECT_EQ(saves ? LocalDbCtrl::saveDbObject(API_WIFI, kSession)
                      : LocalDbCtrl::unlockDbObject(kWifi, kSession),
                0);
      removal.get();
      EXPECT_EQ(fileHolds(kWifi, "count"), saves ? 7 : 0);
      EXPECT_EQ(stateOf(kWifi), LDB_LOCKED);
      EXPECT_EQ(LocalDbCtrl::unlockDbObject(kWifi, kSession), 2) << "there was one lock";
      EXPECT_EQ(other.run([] { return LocalDbCtrl::unlockDbObject(kWifi, nullptr); }), 0);
      LocalDbCtrl::removeDB(kSession);
    }
  }
}

TEST_F(SessionsTest, AreFreedByTheirLastHolder) {
  LocalDbCtrl::cloneNewDB("s");
  ASSERT_TRUE(lockAndCount(kWifi, "s", 7));
  ASSERT_TRUE(lockAndCount(API_QOS, nullptr, 8));
  ASSERT_TRUE(lockAndCount(API_MISC, "unknown", 9));
  // Its own holder removes it, without waiting for itself.
  EXPECT_TRUE(contains(linesOf([] { LocalDbCtrl::removeDB("s"); }), kLockState));
  EXPECT_TRUE(contains(linesOf([] { LocalDbCtrl::init(); }), kLockState));
  EXPECT_EQ(LocalDbCtrl::controllers.size(), 1U);
  ASSERT_TRUE(lockAndCount(API_QOS, nullptr, 1)) << "the new default handler's own slot";
  EXPECT_EQ(LocalDbCtrl::unlockDbObject(API_QOS, nullptr), 0);
  EXPECT_EQ(stateOf(API_QOS), LDB_ACCESSIBLE) << "first what the key names now";
  EXPECT_EQ(LocalDbCtrl::saveDbObject(API_QOS, nullptr), 0);
  EXPECT_EQ(LocalDbCtrl::saveDbObject(API_MISC, "unknown"), 0);
  EXPECT_TRUE(contains(linesOf([] { EXPECT_EQ(LocalDbCtrl::unlockDbObject(kWifi, "s"), 0); }),
                       "release jobj"))
      << "nobody else can free what unlock kept";
  EXPECT_EQ(fileHolds(API_QOS, "count") + fileHolds(API_MISC, "count"), 8 + 9);
}

// A save writes without the mutex. Here it writes more than a pipe takes, and so lasts until the
// pipe is read.
TEST_F(SessionsTest, AreLeftAloneWhileASaveWrites) {
  LocalDbCtrl::cloneNewDB("s");
  Thread saver;
  saver.run([] {
    const std::string text(100'000, 'x');
    LocalDbCtrl::lockDbObject(kWifi, "", "s")->set("text", text.c_str());
  });
  const std::string pipe = LocalDbCtrl::getFileName(kWifi);
  removeFile(kWifi);
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  bool isRefused = false, isOtherHeldUp = true;
  int saved = -1;
  const std::string lines = linesOf([&] {
    auto saving = std::async(std::launch::async, [&saver] {
      return saver.run([] { return LocalDbCtrl::saveDbObject(API_WIFI, "s"); });
    });
    pollfd filling{reader, POLLIN, 0};
    poll(&filling, 1, 1000);
    isRefused = LocalDbCtrl::lockDbObject(kWifi, "", "s") == nullptr;
    isOtherHeldUp = LocalDbCtrl::lockDbObject(API_QOS, "", "s") == nullptr;
    LocalDbCtrl::unlockDbObject(API_QOS, "s");
    LocalDbCtrl::removeDB("s");
    char part[4096];
    while (read(reader, part, sizeof part) != 0) {
    }
    saved = saving.get();
  });
  close(reader);
  EXPECT_TRUE(isRefused);
  EXPECT_FALSE(isOtherHeldUp);
  EXPECT_EQ(saved, 0);
  EXPECT_TRUE(contains(lines, kLockState));
}

TEST(HandlerTest, StandsAlone) {
  const LOCALDB_HANDLER handler;
  for (unsigned int area = 0; area < 8; ++area) {
    EXPECT_EQ(handler.state[area], LDB_NOT_INITIALIZED);
    EXPECT_EQ(handler.localdb[area], nullptr);
  }
}

}  // namespace
