// Many threads on few slots while sessions come and go, with an exact account of what must be in
// the files at the end.
//
// Handlers share the files and the last save wins, so each area is changed under one session's key
// only. In a session that stays, every count is kept: by a save in the file, by an unlock in memory
// until the next save. A session that is removed takes along what was only unlocked.
#include <array>
#include <atomic>
#include <chrono>
#include <random>
#include <vector>

#include "tests/localdb/database_fixture.h"

namespace {

constexpr int kThreads = 8;
constexpr auto kTime = std::chrono::milliseconds(1500);
constexpr std::array<const char*, 4> kSessions = {"default", "one that stays for the whole test",
                                                  "one that comes and goes", "another such"};

bool stays(unsigned int area) {
  return area % kSessions.size() < 2;
}

class StressTest : public DatabaseTest {
 protected:
  // Adds one to the area's count, in a document or through a handle on a part of it.
  void count(unsigned int area, bool saves) {
    const char* const key = kSessions[area % kSessions.size()];
    TreeMapObject* const database = LocalDbCtrl::lockDbObject(area, "", key);
    if (database == nullptr) {
      return;
    }
    EXPECT_FALSE(isHeld_[area].exchange(stays(area))) << "two holders of area " << area;
    database->set("count", database->get<int>("count") + 1);
    ++counted_[area];
    isHeld_[area] = false;
    EXPECT_EQ(saves ? LocalDbCtrl::saveDbObject(static_cast<API_TYPE_T>(area), key)
                    : LocalDbCtrl::unlockDbObject(area, key),
              0);
  }

  void work(unsigned int seed) {
    std::mt19937 random(seed);
    for (const auto end = std::chrono::steady_clock::now() + kTime;
         std::chrono::steady_clock::now() < end;) {
      const auto area = static_cast<unsigned int>(random() % counted_.size());
      const char* const visitor = kSessions[2 + random() % 2];
      switch (random() % 16) {
        case 0:
          LocalDbCtrl::cloneNewDB(visitor);
          break;
        case 1:
          LocalDbCtrl::removeDB(visitor);
          break;
        case 2:
          EXPECT_EQ(LocalDbCtrl::unlockDbObject(area, visitor), 2) << "a stranger's";
          break;
        default:
          count(area, random() % 4 == 0);
      }
    }
  }

  std::array<std::atomic<int>, 8> counted_{};
  std::array<std::atomic<bool>, 8> isHeld_{};
};

TEST_F(StressTest, LosesNothingThatWasSaved) {
  LocalDbCtrl::cloneNewDB(kSessions[1]);
  std::vector<std::thread> threads;
  for (unsigned int seed = 0; seed < kThreads; ++seed) {
    threads.emplace_back([this, seed] { work(seed); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (unsigned int area = 0; area < counted_.size(); ++area) {
    SCOPED_TRACE(area);
    EXPECT_GT(counted_[area], 0);
    count(area, true);
    if (stays(area)) {
      EXPECT_EQ(fileHolds(area, "count"), counted_[area]);
    } else {
      EXPECT_GT(fileHolds(area, "count"), 0);
      EXPECT_LE(fileHolds(area, "count"), counted_[area]);
    }
  }
}

}  // namespace
