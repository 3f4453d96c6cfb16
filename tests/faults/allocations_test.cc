// What takes no memory from the heap: a path that resolves, a log line, a lock that is refused.
#include <fcntl.h>

#include <functional>
#include <utility>

#include "hearth/hearth.h"
#include "log/backtrace.h"
#include "tests/faults/memory_faults.h"
#include "tests/support/scratch.h"

namespace {

using Steps = std::vector<std::pair<const char*, std::function<void()>>>;

// Counts the allocations of each step, with the log off and with every switch on.
void expectAllocations(int expected, const Steps& steps) {
  for (const bool isLogged : {false, true}) {
    Logger::setGroup(LOG_GROUP_UTIL, isLogged);
    for (const auto& [name, run] : steps) {
      failAllocation(0, false);
      run();
      EXPECT_EQ(expected, countedAllocations()) << name << " logged " << isLogged;
    }
  }
}

// A database with an area "wifi", and the log as a gateway ships it: every switch on, to a file and
// to standard output, which goes nowhere.
class Allocations : public Scratch {
 protected:
  Allocations() {
    folder_.file("wifi/wifi.ldb", R"({"radios":[{"ssid":"home","channel":6,"on":true}]})");
    BEConfig::DATA_LOCATION = ".";
    BEConfig::LOG_FILE = "log";
    Logger::enableFileLog = 1;
    LocalDbCtrl::init();
    fflush(stdout);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
    wifi_ = LocalDbCtrl::lockDbObject(API_WIFI, "", nullptr);
  }

  ~Allocations() override {
    LocalDbCtrl::unlockDbObject(API_WIFI, nullptr);
    LocalDbCtrl::removeDB("default");
    Logger::mask = 0;
    fflush(stdout);
    dup2(console_, STDOUT_FILENO);
    close(console_);
  }

  const int console_ = dup(STDOUT_FILENO);
  TreeMapObject* wifi_ = nullptr;
};

TEST_F(Allocations, NoneToResolveAPath) {
  const std::string usual = "radios.[0].ssid" + std::string(100, '.');
  json_object* const root = wifi_->jobj;
  json_object* const channel = JsonData::getJObj(root, "radios.[0].channel");
  expectAllocations(0, {{"member", [&] { JsonData::getJObj(root, "radios.[0].ssid"); }},
                        {"element", [&] { JsonData::getJObj(root, "radios.[ 0 ]"); }},
                        {"missing", [&] { JsonData::getJObj(root, "radios.[1].ssid"); }},
                        {"many tokens", [&] { JsonData::getJObj(root, usual.c_str()); }},
                        {"int", [&] { wifi_->get<int>("radios.[0].channel"); }},
                        {"bool", [&] { wifi_->get<bool>("radios.[0].on"); }},
                        {"text", [&] { wifi_->get<const char*>("radios.[0].ssid"); }},
                        {"replace", [&] { JsonData::setJObj(root, "radios.[0].on", channel); }}});
}

TEST_F(Allocations, OneForAKeyCopyAndOneForALongPath) {
  const std::string path = "radios.[0]." + std::string(300, 'x');
  json_object* parent = nullptr;
  const char* key = nullptr;
  expectAllocations(1, {{"long path", [&] { JsonData::getJObj(wifi_->jobj, path.c_str()); }},
                        {"key", [&] {
                           JsonData::getJObj(wifi_->jobj, "radios.[0].ssid", parent, key);
                           delete[] key;
                         }}});
}

TEST_F(Allocations, NoneToLogALine) {
  const std::string longer(3000, 'x');
  const Steps lines = {
      {"short", [] { Logger::print(LOG_INFO, LOG_GROUP_UTIL, "%s: %d\n", "line", 1); }},
      {"cut", [&] { Logger::print(LOG_ERROR, LOG_GROUP_UTIL, "%s\n", longer.c_str()); }},
      {"number", [] { Logger::print(LOG_DEBUG, LOG_GROUP_UTIL, "%f %p\n", 0.1, nullptr); }}};
  expectAllocations(0, lines);
  BEConfig::LOG_FILE = "no folder/log";
  expectAllocations(0, lines);
}

TEST_F(Allocations, NoneToTakeTheStackOfACrash) {
  void* frames[10];
  Logger::init();
  expectAllocations(0, {{"backtrace", [&] { EXPECT_LT(1, backtrace(frames, 10)); }}});
}

TEST_F(Allocations, NoneToRefuseALock) {
  const std::string longer(1000, 'k');
  const auto lock = [](const char* key) { return LocalDbCtrl::lockDbObject(API_WIFI, "", key); };
  expectAllocations(0, {{"held", [=] { EXPECT_EQ(nullptr, lock("default")); }},
                        {"unknown key", [=] { EXPECT_EQ(nullptr, lock("unknown")); }},
                        {"long key", [&] { EXPECT_EQ(nullptr, lock(longer.c_str())); }},
                        {"no key", [=] { EXPECT_EQ(nullptr, lock(nullptr)); }},
                        {"no area", [] { LocalDbCtrl::lockDbObject(8, "", nullptr); }},
                        {"not held", [] { LocalDbCtrl::unlockDbObject(API_QOS, "default"); }}});
}

}  // namespace
