// Edits that are stopped halfway, where somebody else changes the file or holds the lock. No
// command line can be stopped there, so these tests use the inside of the command.
#include "tools/document/loaded_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "hearth/be_config.h"
#include "tests/support/scratch.h"
#include "tools/document/folder_lock.h"
#include "tools/terminal/failure.h"

namespace hearth::tool {
namespace {

// Runs each test on an area and on a plain file; the file holds {"a":1} at first.
class LoadedFileTest : public testing::TestWithParam<const char*> {
 protected:
  LoadedFileTest() {
    dir_.file("wifi/wifi.ldb", "{\"a\":1}");
    BEConfig::DATA_LOCATION = dir_.path();
  }

  AreaOrFile chosen() const {
    const std::string name = GetParam();
    return AreaOrFile(name == "file" ? dir_ / "wifi/wifi.ldb" : name);
  }

  const TempDir dir_;
};

Exit exitOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.exit();
  }
  return Exit::kDone;
}

TEST_P(LoadedFileTest, DoesNotOverwriteAChangeThatItHasNotSeen) {
  for (const bool force : {false, true}) {
    dir_.file("wifi/wifi.ldb", "{\"a\":1}");
    LoadedFile document(chosen());
    document.handle().set("a", 2);
    dir_.file("wifi/wifi.ldb", "{\"a\":3}");
    SaveOptions options;
    options.force = force;
    EXPECT_EQ(force ? Exit::kDone : Exit::kConflict, exitOf([&] { document.save(options); }));
    EXPECT_EQ(force ? "{\n  \"a\":2\n}" : "{\"a\":3}", dir_.contentsOf("wifi/wifi.ldb"));
  }
}

TEST_P(LoadedFileTest, SavesOverAFileThatWasReplacedByTheSame) {
  LoadedFile document(chosen());
  document.handle().set("a", 2);
  std::filesystem::remove(dir_ / "wifi/wifi.ldb");
  dir_.file("wifi/wifi.ldb", "{\"a\":1}");
  EXPECT_EQ(Exit::kDone, exitOf([&] { document.save({}); }));
}

TEST_P(LoadedFileTest, DoesNotBringBackAFileThatWasRemoved) {
  LoadedFile document(chosen());
  document.handle().set("a", 2);
  std::filesystem::remove(dir_ / "wifi/wifi.ldb");
  EXPECT_EQ(Exit::kIo, exitOf([&] { document.save({}); }));
  EXPECT_FALSE(std::filesystem::exists(dir_ / "wifi/wifi.ldb"));
}

TEST_P(LoadedFileTest, WaitsForAnotherCommandAndThenGivesUp) {
  auto lock = std::make_unique<FolderLock>(chosen().file);
  EXPECT_EQ(Exit::kConflict, exitOf([&] { FolderLock second(chosen().file); }));
  std::thread other([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    lock.reset();
  });
  EXPECT_EQ(Exit::kDone, exitOf([&] { FolderLock second(chosen().file); }));
  other.join();
}

INSTANTIATE_TEST_SUITE_P(AreaAndFile, LoadedFileTest, testing::Values("wifi", "file"));

}  // namespace
}  // namespace hearth::tool
