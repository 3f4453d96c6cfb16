// A backend that uses the kit and an operator who uses the command, on one area at once: both wait
// for the same lock, so neither loses what the other has saved. The database is reached by a
// symbolic link, where it has two folders that could be locked.
#include <hearth/kit.h>

#include <atomic>

#include "tests/support/scratch.h"

namespace {

using TogetherTest = ScratchInMemory;

// Half of the time the area is the backend's.
TEST_F(TogetherTest, LoseNothingOfEachOther) {
  constexpr int kRounds = 20;
  std::filesystem::create_directories("data/misc");
  std::filesystem::create_directories("elsewhere");
  putText("elsewhere/misc.ldb", R"({"kit":0,"command":[]})");
  std::filesystem::create_symlink("../../elsewhere/misc.ldb", "data/misc/misc.ldb");
  BEConfig::DATA_LOCATION = "./data";
  LocalDbCtrl::init();
  std::atomic<bool> isOperated{false};
  std::thread operating([&isOperated] {
    const std::string script = "for i in $(seq " + std::to_string(kRounds) +
                               "); do " HEARTH_COMMAND
                               " add misc command x --no-schema >/dev/null && "
                               "echo add misc command y --no-schema | " HEARTH_COMMAND
                               " batch - >/dev/null || exit 1; done";
    EXPECT_EQ(0, system(script.c_str()));
    isOperated = true;
  });
  int changes = 0;
  for (; !isOperated; ++changes) {
    auto change =
        hearth::Change::begin(API_MISC, "", hearth::Session::shared(), std::chrono::seconds(30));
    if (!change) {
      ADD_FAILURE() << change.failure().sentence;
      break;
    }
    change->set("kit", hearth::getOr(*change, "kit", 0) + 1);
    usleep(3000);
    const auto done = change->commit();
    EXPECT_TRUE(done) << done.failure().sentence;
    usleep(3000);
  }
  operating.join();
  const auto both = hearth::parseFile("elsewhere/misc.ldb");
  EXPECT_EQ(changes, hearth::getOr(*both, "kit", 0));
  EXPECT_EQ(2 * kRounds, static_cast<int>(hearth::elements(*both, "command").size()));
}

}  // namespace
