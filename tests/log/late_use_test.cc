// The library after main: what the program and other libraries run at the very end comes after the
// destructors of static objects, and may still log and look for files.
#include <csignal>
#include <utility>

#include "hearth/hearth.h"
#include "tests/support/scratch.h"

namespace {

void (*atTheVeryEnd)() = nullptr;

__attribute__((destructor)) void runAtTheVeryEnd() {
  if (atTheVeryEnd != nullptr) {
    atTheVeryEnd();
  }
}

using LateUseTest = Scratch;

TEST_F(LateUseTest, FindsTheLogAndTheData) {
  const std::string file = "a log whose name stands on the heap";
  const std::string folder = "a folder whose name stands on the heap";
  const std::string line = "UTIL          | INFO: " + folder + "/qos/qos.ldb\n";
  const std::pair<void (*)(), std::string> rows[] = {
      {[] { exit(0); }, line},
      {[] { raise(SIGSEGV); }, "UTIL          |ERROR: Error: signal 11:\n" + line},
  };
  for (const auto& [end, lines] : rows) {
    std::filesystem::remove(file);
    inChild([&, end = end] {
      BEConfig::LOG_FILE = file;
      BEConfig::DATA_LOCATION = folder;
      Logger::init();
      atTheVeryEnd = [] {
        Logger::print(LOG_INFO, LOG_GROUP_UTIL, "%s\n", LocalDbCtrl::getFileName(API_QOS));
      };
      end();
    });
    EXPECT_EQ(lines, textOf(file));
    EXPECT_EQ(std::set<std::string>{file}, namesIn(".")) << lines;
  }
}

}  // namespace
