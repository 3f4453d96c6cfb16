// Threads that pthread_cancel ends: an operation that has begun is finished first, so no lock and
// no descriptor stays behind. Each operation here begins with the request pending, which any
// cancellation point inside would grant.
#include <sys/resource.h>

#include "hearth/hearth.h"
#include "tests/support/scratch.h"

namespace {

using CancellationTest = Scratch;

int firstFree = 0;

void initOnANewLog() {
  std::filesystem::remove("BE.log");
  Logger::init();
}

void print() {
  Logger::print(LOG_INFO, LOG_GROUP_UTIL, "line\n");
}

void printToConsole() {
  Logger::enableFileLog = 0;
  print();
  Logger::enableFileLog = 1;
}

void loadAndSave() {
  TreeMapObject* const document = JsonData::createObjectFromFile("document");
  EXPECT_EQ(0, JsonData::saveObjectToFile("document", document));
  delete document;
}

// With one descriptor left the file cannot be replaced.
void setAttemptInPlace() {
  rlimit all{};
  getrlimit(RLIMIT_NOFILE, &all);
  const rlimit oneLeft{static_cast<rlim_t>(firstFree) + 1, all.rlim_max};
  setrlimit(RLIMIT_NOFILE, &oneLeft);
  BELoginRecord::setAttempt("a");
  setrlimit(RLIMIT_NOFILE, &all);
}

bool isFree(pthread_mutex_t& mutex) {
  return pthread_mutex_trylock(&mutex) == 0 && pthread_mutex_unlock(&mutex) == 0;
}

TEST_F(CancellationTest, WaitsForTheEndOfAnOperation) {
  putText("document", R"({"enable_bruteforce_prevent":0})");
  const std::pair<const char*, void (*)()> rows[] = {
      {"BEConfig::init", [] { BEConfig::init("document"); }},
      {"Logger::init", initOnANewLog},
      {"LocalDbCtrl::init", LocalDbCtrl::init},
      {"print", print},
      {"print to the console", printToConsole},
      {"load and save", loadAndSave},
      {"BELoginRecord::init", BELoginRecord::init},
      {"setAttempt", [] { BELoginRecord::setAttempt("a"); }},
      {"setAttempt in place", setAttemptInPlace},
      {"getAttempt", [] { EXPECT_EQ(2, BELoginRecord::getAttempt("a").attempts); }},
      {"eraseAttempt", [] { BELoginRecord::eraseAttempt("a"); }},
      {"deinit", BELoginRecord::deinit},
      {"uptime", [] { EXPECT_LT(0, BEConfig::get_Session_Uptime()); }},
  };
  Logger::init();
  setvbuf(stdout, nullptr, _IONBF, 0);
  const std::size_t openFiles = namesIn("/proc/self/fd").size();
  for (int round = 0; round < 20; ++round) {
    BELoginRecord::isRunning = false;
    for (const auto& [name, operation] : rows) {
      SCOPED_TRACE(testing::Message() << name << " in round " << round);
      bool isFinished = false;
      printed([&, run = operation] {
        firstFree = dup(STDOUT_FILENO);
        close(firstFree);
        onSmallStack([&] {
          pthread_cancel(pthread_self());
          run();
          isFinished = true;
          pthread_testcancel();
          ADD_FAILURE() << "the request is lost";
        });
      });
      ASSERT_TRUE(isFinished);
      ASSERT_TRUE(isFree(Logger::lock) && isFree(BELoginRecord::lock));
    }
  }
  EXPECT_EQ(openFiles, namesIn("/proc/self/fd").size());
}

}  // namespace
