// A backend that uses the kit and an operator who uses the command, on one area at once: both wait
// for the same lock, so neither loses what the other has saved. The database is reached by a
// symbolic link, where it has two folders that could be locked.
#include <hearth/kit.h>

#include "tests/support/scratch.h"

namespace {

using TogetherTest = ScratchInMemory;

TEST_F(TogetherTest, LoseNothingOfEachOther) {
  constexpr int kChanges = 60;
  std::filesystem::create_directories("data/misc");
  std::filesystem::create_directories("elsewhere");
  putText("elsewhere/misc.ldb", R"({"kit":0,"command":[]})");
  std::filesystem::create_symlink("../../elsewhere/misc.ldb", "data/misc/misc.ldb");
  BEConfig::DATA_LOCATION = "./data";
  LocalDbCtrl::init();
  std::thread operating([] {
    const std::string script = "for i in $(seq " + std::to_string(kChanges / 2) + "); do " +
                               HEARTH_COMMAND
                               " add misc command x --no-schema >/dev/null && "
                               "printf 'add misc command y --no-schema\\n' | " +
                               HEARTH_COMMAND " batch - >/dev/null || exit 1; done";
    EXPECT_EQ(0, system(script.c_str()));
  });
  for (int i = 0; i < kChanges; ++i) {
    auto change =
        hearth::Change::begin(API_MISC, "", hearth::Session::shared(), std::chrono::seconds(30));
    ASSERT_TRUE(change) << change.failure().sentence;
    change->set("kit", hearth::getOr(*change, "kit", 0) + 1);
    const auto done = change->commit();
    EXPECT_TRUE(done) << done.failure().sentence;
    usleep(3000);
  }
  operating.join();
  const auto both = hearth::parseFile("elsewhere/misc.ldb");
  EXPECT_EQ(kChanges, hearth::getOr(*both, "kit", 0));
  EXPECT_EQ(kChanges, static_cast<int>(hearth::elements(*both, "command").size()));
}

}  // namespace
