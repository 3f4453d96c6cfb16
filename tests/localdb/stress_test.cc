// Many threads work on few slots while sessions come and go, with an exact account of what must be
// in the files at the end.
//
// Handlers share the files and the last save wins. So an area whose session stays is changed under
// that session's key only, by all threads: every count is kept, by a save in the file, by an unlock
// in memory until the next save. An area whose session comes and goes is saved by one thread only,
// under whatever handler its key names: the file holds what that thread saved last.
//
// HEARTH_STRESS_SECONDS sets how long it runs. It goes on until each thread has counted in its own
// area, for slow machines, and until a lock was refused, for those with a single processor.
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <random>

#include "tests/localdb/database_fixture.h"
#include "tests/localdb/held_calls.h"

namespace {

constexpr unsigned int kThreads = 8;
constexpr std::array<const char*, 4> kSessions = {"default", "one that stays for the whole test",
                                                  "one that comes and goes", "another such"};

std::chrono::milliseconds duration() {
  const char* const seconds = std::getenv("HEARTH_STRESS_SECONDS");
  return std::chrono::milliseconds(seconds != nullptr ? 1000 * std::atoi(seconds) : 1500);
}

bool stays(unsigned int area) {
  return area % kSessions.size() < 2;
}

class StressTest : public DatabaseTest {
 protected:
  void count(unsigned int thread, unsigned int area, bool saves) {
    const char* const key = kSessions[area % kSessions.size()];
    TreeMapObject* const database = LocalDbCtrl::lockDbObject(area, "", key);
    if (database == nullptr) {
      ++refused_;
      return;
    }
    EXPECT_FALSE(isHeld_[area].exchange(stays(area))) << "two holders of area " << area;
    const bool counts = stays(area) || thread == area;
    database->set(counts ? "count" : "radios.channel",
                  stays(area) ? database->get<int>("count") + 1 : counted_[area] + 1);
    counted_[area] += counts ? 1 : 0;
    isHeld_[area] = false;
    EXPECT_EQ(0, counts && (saves || !stays(area))
                     ? LocalDbCtrl::saveDbObject(static_cast<API_TYPE_T>(area), key)
                     : LocalDbCtrl::unlockDbObject(area, key));
  }

  void work(unsigned int thread) {
    std::mt19937 random(thread);
    for (const auto end = std::chrono::steady_clock::now() + duration();
         std::chrono::steady_clock::now() < end || counted_[thread] == 0 || refused_ == 0;) {
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
          EXPECT_EQ(2, LocalDbCtrl::unlockDbObject(area, visitor)) << "a stranger's";
          EXPECT_EQ(2, LocalDbCtrl::saveDbObject(static_cast<API_TYPE_T>(area), visitor));
          break;
        default:
          count(thread, area, random() % 4 == 0);
      }
    }
  }

  std::array<std::atomic<int>, 8> counted_{};
  std::array<std::atomic<bool>, 8> isHeld_{};
  std::atomic<int> refused_{0};
};

TEST_F(StressTest, LosesNothingThatWasSaved) {
  LocalDbCtrl::cloneNewDB(kSessions[1]);
  inThreads(kThreads, [this](unsigned int thread) { work(thread); });
  for (unsigned int area = 0; area < counted_.size(); ++area) {
    if (stays(area)) {
      count(area, area, true);
    }
    EXPECT_EQ(counted_[area], fileHolds(area, "count")) << area;
  }
}

// Each thread holds slots of several sessions of one area at once, while sessions come and go and
// the device is slow. Only the handlers of one session are ever saved, and each is made after the
// one before has been removed, so every saved change must be in the file. The default handler and
// the other session carry a mark in memory and are unlocked.
class ComingAndGoingTest : public DatabaseTest {
 protected:
  static constexpr char kSaved[] = "a session that is saved, comes and goes";
  static constexpr char kMarked[] = "another that comes and goes";

  void work(unsigned int thread) {
    std::mt19937 random(thread);
    for (const auto end = std::chrono::steady_clock::now() + duration();
         std::chrono::steady_clock::now() < end || saved_ == 0;) {
      const char* const visitor = random() % 2 == 0 ? kSaved : kMarked;
      if (random() % 4 != 0) {
        holdSeveral(random);
      } else if (const std::unique_lock manager(isManaged_, std::try_to_lock); manager) {
        LocalDbCtrl::removeDB(visitor);
        LocalDbCtrl::cloneNewDB(visitor);
      }
    }
  }

  std::atomic<int> saved_{0};

 private:
  std::mutex isManaged_;

  void holdSeveral(std::mt19937& random) {
    std::array<const char*, 3> keys = {"default", kSaved, kMarked};
    std::array<TreeMapObject*, 3> held{};
    std::shuffle(keys.begin(), keys.end(), random);
    for (std::size_t i = 0; i < keys.size(); ++i) {
      held[i] = LocalDbCtrl::lockDbObject(API_WIFI, "", keys[i]);
      if (held[i] != nullptr && keys[i] != kSaved) {
        held[i]->set("marked", 1);
      }
    }
    std::this_thread::yield();
    for (const std::size_t i : {1U, 2U, 0U}) {
      if (held[i] == nullptr) {
        continue;
      }
      // It is the default handler's, and marked, when the session is not there.
      const bool isMarked = held[i]->get<int>("marked") == 1;
      if (!isMarked) {
        held[i]->set("count", held[i]->get<int>("count") + 1);
      }
      EXPECT_EQ(0, isMarked ? LocalDbCtrl::unlockDbObject(API_WIFI, keys[i])
                            : LocalDbCtrl::saveDbObject(API_WIFI, keys[i]));
      saved_ += isMarked ? 0 : 1;
    }
  }
};

TEST_F(ComingAndGoingTest, LosesNothingThatWasSaved) {
  answerTo("lock ");
  LocalDbCtrl::getDBByKey("default")->localdb[API_WIFI]->set("marked", 1);
  answerTo("unlock");
  const SlowFlush slow(1000);
  inThreads(kThreads, [this](unsigned int thread) { work(thread); });
  EXPECT_EQ(saved_, fileHolds(API_WIFI, "count"));
  EXPECT_EQ(-1, fileHolds(API_WIFI, "marked"));
}

}  // namespace
