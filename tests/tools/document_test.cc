// What only an edit that is stopped halfway can show: somebody else changes the file meanwhile.
#include "tools/document/document.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "hearth/be_config.h"
#include "tests/support/scratch.h"
#include "tools/terminal/failure.h"

namespace hearth::tool {
namespace {

// Each target's file holds {"a":1} at first.
class DocumentTest : public testing::TestWithParam<const char*> {
 protected:
  DocumentTest() {
    dir_.file("wifi/wifi.ldb", "{\"a\":1}");
    BEConfig::DATA_LOCATION = dir_.path();
  }

  Target target() const {
    const std::string name = GetParam();
    return Target(name == "file" ? dir_ / "wifi/wifi.ldb" : name);
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

TEST_P(DocumentTest, DoesNotOverwriteAChangeThatItHasNotSeen) {
  for (const bool force : {false, true}) {
    dir_.file("wifi/wifi.ldb", "{\"a\":1}");
    Document document(target());
    document.handle().set("a", 2);
    dir_.file("wifi/wifi.ldb", "{\"a\":3}");
    SaveOptions options;
    options.force = force;
    EXPECT_EQ(exitOf([&] { document.save(options); }), force ? Exit::kDone : Exit::kConflict);
    EXPECT_EQ(dir_.contentsOf("wifi/wifi.ldb"), force ? "{\n  \"a\":2\n}" : "{\"a\":3}");
  }
}

TEST_P(DocumentTest, SavesOverAFileThatWasReplacedByTheSame) {
  Document document(target());
  document.handle().set("a", 2);
  std::filesystem::remove(dir_ / "wifi/wifi.ldb");
  dir_.file("wifi/wifi.ldb", "{\"a\":1}");
  EXPECT_EQ(exitOf([&] { document.save({}); }), Exit::kDone);
}

TEST_P(DocumentTest, DoesNotBringBackAFileThatWasRemoved) {
  Document document(target());
  document.handle().set("a", 2);
  std::filesystem::remove(dir_ / "wifi/wifi.ldb");
  EXPECT_EQ(exitOf([&] { document.save({}); }), Exit::kIo);
  EXPECT_FALSE(std::filesystem::exists(dir_ / "wifi/wifi.ldb"));
}

TEST_P(DocumentTest, WaitsForAnotherCommandAndThenGivesUp) {
  auto lock = std::make_unique<FolderLock>(target().file);
  EXPECT_EQ(exitOf([&] { FolderLock second(target().file); }), Exit::kConflict);
  std::thread other([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    lock.reset();
  });
  EXPECT_EQ(exitOf([&] { FolderLock second(target().file); }), Exit::kDone);
  other.join();
}

INSTANTIATE_TEST_SUITE_P(Targets, DocumentTest, testing::Values("wifi", "file"));

}  // namespace
}  // namespace hearth::tool
