// The states of a slot: every transition with its answer and its lines, and who is refused.
#include <chrono>

#include "tests/localdb/database_fixture.h"

namespace {

using SlotTest = DatabaseTest;
constexpr unsigned int kWifi = API_WIFI;

// Does what a row of the table names; "handle", "null" or the number answered.
std::string answerOf(const std::string& event) {
  if (event == "save") {
    return std::to_string(LocalDbCtrl::saveDbObject(API_WIFI, "default"));
  }
  if (event == "unlock") {
    return std::to_string(LocalDbCtrl::unlockDbObject(kWifi, "default"));
  }
  const std::string path = event.substr(event.find(' ') + 1);
  TreeMapObject* const handle = LocalDbCtrl::lockDbObject(kWifi, path.c_str(), "default");
  if (handle != nullptr && !path.empty()) {
    delete handle;
  }
  return handle != nullptr ? "handle" : "null";
}

std::string answersOf(std::initializer_list<const char*> events) {
  std::string answers;
  for (const char* event : events) {
    answers += answerOf(event);
  }
  return answers;
}

struct Transition {
  const char *from, *event, *file, *answer;
  LOCALDB_STATE_T to;
  const char* lines;
};

constexpr char kWifiLoaded[] = "DEBUG: lockDbObject: Initialized local database for api type 1\n";
constexpr char kNoFile[] = "";
constexpr char kBroken[] = "{";

const Transition kTransitions[] = {
    {"", "lock ", kFreshFile, "handle", LDB_LOCKED, "DEBUG: lockDbObject: start state=0\nLOADED"},
    {"", "lock radios.channel", kFreshFile, "handle", LDB_LOCKED,
     "DEBUG: lockDbObject: start state=0\nLOADED"},
    {"", "lock nowhere", kFreshFile, "null", LDB_ACCESSIBLE,
     "DEBUG: lockDbObject: start state=0\nLOADED"},
    {"", "lock ", kNoFile, "null", LDB_NOT_INITIALIZED,
     "DEBUG: lockDbObject: start state=0\n"
     "WARN: lockDbObject: Cannot load database from DATA/wifi/wifi.ldb\n"
     "ERROR: lockDbObject: There is something wrong! localdb 1 is null in accessable state 0\n"},
    {"", "lock ", kBroken, "handle", LDB_LOCKED, "DEBUG: lockDbObject: start state=0\nLOADED"},
    {"", "lock radios", kBroken, "null", LDB_ACCESSIBLE,
     "DEBUG: lockDbObject: start state=0\nLOADED"},
    {"", "save", kFreshFile, "2", LDB_NOT_INITIALIZED,
     "DEBUG: saveDbObject: apiT=1 state=0\nDEBUG: saveDbObject: I am not in locked state\n"},
    {"lock /unlock", "lock radios", kFreshFile, "handle", LDB_LOCKED,
     "DEBUG: lockDbObject: start state=1\n"},
    {"lock /unlock", "lock nowhere", kFreshFile, "null", LDB_ACCESSIBLE,
     "DEBUG: lockDbObject: start state=1\n"},
    {"lock /unlock", "save", kFreshFile, "2", LDB_ACCESSIBLE,
     "DEBUG: saveDbObject: apiT=1 state=1\nDEBUG: saveDbObject: I am not in locked state\n"},
    {"lock /unlock", "unlock", kFreshFile, "2", LDB_ACCESSIBLE,
     "DEBUG: unlockDbObject: apiT=1 state=1\nWARN: unlockDbObject: I am not in locked state\n"},
    {"lock ", "lock ", kFreshFile, "null", LDB_LOCKED,
     "DEBUG: lockDbObject: start state=2\n"
     "WARN: lockDbObject: failed to access local database (1) in writing state\n"},
    {"lock radios", "unlock", kFreshFile, "0", LDB_ACCESSIBLE,
     "DEBUG: unlockDbObject: apiT=1 state=2\n"},
    {"lock ", "save", kFreshFile, "0", LDB_NOT_INITIALIZED,
     "DEBUG: saveDbObject: apiT=1 state=2\n"
     "DEBUG: saveDbObject: type=1 save object PTR to file DATA/wifi/wifi.ldb\n"},
    {"lock ", "save", kBroken, "2", LDB_NOT_INITIALIZED,
     "DEBUG: saveDbObject: apiT=1 state=2\n"
     "DEBUG: saveDbObject: type=1 save object PTR to file DATA/wifi/wifi.ldb\n"},
};

TEST_F(SlotTest, MovesAsTheTableSays) {
  for (const Transition& row : kTransitions) {
    SCOPED_TRACE(testing::Message() << row.from << " then " << row.event << " on " << row.file);
    LocalDbCtrl::init();
    row.file == kNoFile ? removeFile(kWifi) : writeFile(kWifi, row.file);
    std::istringstream events(row.from);
    for (std::string event; std::getline(events, event, '/');) {
      answerOf(event);
    }
    std::string answer;
    EXPECT_EQ(protocolLinesOf([&] { answer = answerOf(row.event); }),
              replaced(row.lines, "LOADED", kWifiLoaded));
    EXPECT_EQ(answer, row.answer);
    EXPECT_EQ(stateOf(kWifi), row.to);
    const bool isLoaded = LocalDbCtrl::getDBByKey("default")->localdb[kWifi] != nullptr;
    EXPECT_EQ(isLoaded, row.to != LDB_NOT_INITIALIZED);
    // Nothing stays blocked, whatever the answer was.
    writeFile(kWifi, kFreshFile);
    LocalDbCtrl::unlockDbObject(kWifi, "default");
    EXPECT_EQ(Thread().run([] { return answersOf({"lock ", "unlock"}); }), "handle0");
  }
}

TEST_F(SlotTest, KeepsUnsavedChangesInMemoryOnly) {
  ASSERT_TRUE(lockAndCount(kWifi, "default", 1));
  EXPECT_EQ(LocalDbCtrl::unlockDbObject(kWifi, "default"), 0);
  EXPECT_EQ(fileHolds(kWifi, "count"), 0);
  TreeMapObject* const radios = LocalDbCtrl::lockDbObject(kWifi, "radios", "default");
  radios->set("channel", 11);
  delete radios;
  EXPECT_EQ(LocalDbCtrl::saveDbObject(API_WIFI, "default"), 0);
  EXPECT_EQ(fileHolds(kWifi, "count"), 1) << "the next save writes what unlock kept";
  EXPECT_EQ(fileHolds(kWifi, "radios.channel"), 11);
}

TEST_F(SlotTest, LosesChangesWhoseWriteFails) {
  ASSERT_TRUE(lockAndCount(kWifi, "default", 1));
  BEConfig::DATA_LOCATION = data_ / "missing";
  EXPECT_EQ(LocalDbCtrl::saveDbObject(API_WIFI, "default"), 2);
  BEConfig::DATA_LOCATION = data_.path();
  EXPECT_EQ(stateOf(kWifi), LDB_NOT_INITIALIZED);
  EXPECT_EQ(fileHolds(kWifi, "count"), 0);
}

TEST_F(SlotTest, RefusesWhatNamesNoSlot) {
  EXPECT_EQ(LocalDbCtrl::lockDbObject(8, "", "default"), nullptr);
  EXPECT_EQ(LocalDbCtrl::lockDbObject(kWifi, nullptr, "default"), nullptr);
  EXPECT_EQ(LocalDbCtrl::unlockDbObject(8, "default"), 2);
  LocalDbCtrl::removeDB("default");
  std::string answers;
  EXPECT_EQ(protocolLinesOf([&] {
              answers = answersOf({"lock ", "save", "unlock"});
            }),
            "ERROR: lockDbObject: there is no database handler\n"
            "ERROR: saveDbObject: there is no database handler\n"
            "ERROR: unlockDbObject: there is no database handler\n");
  EXPECT_EQ(answers, "null22");
}

TEST_F(SlotTest, IsOutOfReachForStrangers) {
  Thread holder;
  holder.run([] { ASSERT_TRUE(lockAndCount(kWifi, "default", 1)); });
  std::string answers;
  EXPECT_EQ(protocolLinesOf([&] {
              answers = answersOf({"lock ", "save", "unlock"});
            }),
            "DEBUG: lockDbObject: start state=2\n"
            "WARN: lockDbObject: failed to access local database (1) in writing state\n"
            "DEBUG: saveDbObject: apiT=1 state=2\n"
            "DEBUG: saveDbObject: I am not in locked state\n"
            "DEBUG: unlockDbObject: apiT=1 state=2\n"
            "WARN: unlockDbObject: I am not in locked state\n");
  EXPECT_EQ(answers, "null22");
  EXPECT_EQ(holder.run([] { return answerOf("save"); }), "0");
  EXPECT_EQ(fileHolds(kWifi, "count"), 1);
}

TEST_F(SlotTest, IsIndependentOfOtherSlots) {
  LocalDbCtrl::cloneNewDB("s");
  Thread holder;
  holder.run([] { ASSERT_EQ(answerOf("lock "), "handle"); });
  EXPECT_NE(LocalDbCtrl::lockDbObject(kWifi, "", "s"), nullptr);
  EXPECT_NE(LocalDbCtrl::lockDbObject(API_QOS, "", "default"), nullptr);
  EXPECT_EQ(LocalDbCtrl::lockDbObject(kWifi, "", "no handler"), nullptr);
  EXPECT_EQ(LocalDbCtrl::unlockDbObject(API_QOS, "default"), 0);
  EXPECT_EQ(LocalDbCtrl::unlockDbObject(kWifi, "s"), 0);
  EXPECT_EQ(holder.run([] { return answerOf("unlock"); }), "0");
}

// A locker that has seen the slot free may lose it to another; it must not wait for that one.
TEST_F(SlotTest, TurnsAwayWhoLosesTheRace) {
  pthread_mutex_t& mutex = LocalDbCtrl::getDBByKey("default")->mutex[kWifi];
  LOCALDB_STATE_T& state = LocalDbCtrl::getDBByKey("default")->state[kWifi];
  pthread_mutex_lock(&mutex);  // as a locker that is loading
  auto loser = std::async(std::launch::async, [] { return answerOf("lock "); });
  EXPECT_EQ(loser.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  __atomic_store_n(&state, LDB_LOCKED, __ATOMIC_RELEASE);
  EXPECT_EQ(loser.get(), "null");
  __atomic_store_n(&state, LDB_NOT_INITIALIZED, __ATOMIC_RELEASE);
  pthread_mutex_unlock(&mutex);
}

}  // namespace
