// A program may end, and destroy its static objects, while threads of it still work on the
// database.
#include <atomic>

#include "tests/localdb/database_fixture.h"

namespace {

constexpr char kSession[] = "a-session-key-that-is-longer-than-a-small-string";
constexpr int kAllIsWell = 7;

std::atomic<LOCALDB_HANDLER*> handler{nullptr};
std::atomic<int> failures{0};

void workOn(unsigned int area) {
  TreeMapObject* const database = LocalDbCtrl::lockDbObject(area, "", kSession);
  const bool isRight = LocalDbCtrl::getDBByKey(kSession) == handler && database != nullptr &&
                       database == handler.load()->localdb[area];
  const int ended = area % 2 == 0
                        ? LocalDbCtrl::unlockDbObject(area, kSession)
                        : LocalDbCtrl::saveDbObject(static_cast<API_TYPE_T>(area), kSession);
  failures += isRight && ended == 0 ? 0 : 1;
}

// Is made before the library's static objects, and so destroyed after them.
struct Last {
  ~Last() {
    if (handler != nullptr) {
      workOn(API_MISC);
      usleep(20'000);
      LocalDbCtrl::cloneNewDB("s");
      failures += LocalDbCtrl::controllers.size() == 3 ? 0 : 1;
      _exit(failures == 0 && LocalDbCtrl::removeDB("s") == 1 ? kAllIsWell : 1);
    }
  }
};
__attribute__((init_priority(101))) Last last;

using ExitTest = DatabaseTest;

TEST_F(ExitTest, LeavesThreadsTheirDatabase) {
  const Ended ended = inChild([] {
    LocalDbCtrl::cloneNewDB(kSession);
    handler = LocalDbCtrl::getDBByKey(kSession);
    for (unsigned int area = 0; area < 4; ++area) {
      std::thread([area] {
        for (;;) {
          workOn(area);
        }
      }).detach();
    }
  });
  EXPECT_EQ(kAllIsWell, ended.status) << ended.err;
}

}  // namespace
