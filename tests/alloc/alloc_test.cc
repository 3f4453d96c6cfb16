// What takes no memory from the heap: a path that resolves, a log line, a lock that is refused.
// The program's own malloc counts; the library's calls end here like everyone's.
#include <gtest/gtest.h>
#include <json-c/json.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "hearth/hearth.h"
#include "tests/support/temp_dir.h"

namespace {

std::atomic<int> allocations{0};

}  // namespace

extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);

void* malloc(size_t size) {
  ++allocations;
  return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  ++allocations;
  return __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
  ++allocations;
  return __libc_realloc(memory, size);
}
}

namespace {

int allocationsOf(const std::function<void()>& operation) {
  const int before = allocations;
  operation();
  return allocations - before;
}

struct Step {
  const char* name;
  std::function<void()> run;
};

void expectAllocations(int expected, const std::vector<Step>& steps) {
  for (const Step& step : steps) {
    EXPECT_EQ(expected, allocationsOf(step.run)) << step.name;
  }
}

// A database with an area "wifi", and the log as a gateway ships it: every switch on, to a file and
// to standard output, which goes nowhere.
class Allocations : public testing::Test {
 protected:
  Allocations() {
    dir_.file("data/wifi/wifi.ldb", R"({"radios":[{"ssid":"home","channel":6,"on":true}]})");
    dir_.file("log", "");
    BEConfig::DATA_LOCATION = dir_ / "data";
    BEConfig::LOG_FILE = dir_ / "log";
    Logger::enableFileLog = 1;
    LocalDbCtrl::init();
    console_ = stdout;
    stdout = fopen("/dev/null", "w");
    setvbuf(stdout, buffer_, _IOFBF, sizeof buffer_);
    wifi_ = LocalDbCtrl::lockDbObject(API_WIFI, "", nullptr);
  }

  ~Allocations() override {
    LocalDbCtrl::unlockDbObject(API_WIFI, nullptr);
    LocalDbCtrl::removeDB("default");
    Logger::mask = 0;
    fclose(stdout);
    stdout = console_;
  }

  static void switchLog(bool on) { Logger::setGroup(LOG_GROUP_UTIL, on); }

  const TempDir dir_;
  FILE* console_ = nullptr;
  char buffer_[4096];
  TreeMapObject* wifi_ = nullptr;
};

// Every operation of a case runs with the log off and with every switch on.
TEST_F(Allocations, NoneToResolveAPath) {
  const std::string usual = "radios.[0].ssid" + std::string(100, '.');
  for (const bool on : {false, true}) {
    switchLog(on);
    expectAllocations(0, {{"member", [&] { JsonData::getJObj(wifi_->jobj, "radios.[0].ssid"); }},
                          {"element", [&] { JsonData::getJObj(wifi_->jobj, "radios.[ 0 ]"); }},
                          {"missing", [&] { JsonData::getJObj(wifi_->jobj, "radios.[1].ssid"); }},
                          {"many tokens", [&] { JsonData::getJObj(wifi_->jobj, usual.c_str()); }},
                          {"int", [&] { wifi_->get<int>("radios.[0].channel"); }},
                          {"bool", [&] { wifi_->get<bool>("radios.[0].on"); }},
                          {"text", [&] { wifi_->get<const char*>("radios.[0].ssid"); }},
                          {"replace", [&] {
                             JsonData::setJObj(
                                 wifi_->jobj, "radios.[0].on",
                                 JsonData::getJObj(wifi_->jobj, "radios.[0].channel"));
                           }}});
  }
}

TEST_F(Allocations, OneForAKeyCopyAndOneForALongPath) {
  const std::string path = "radios.[0]." + std::string(300, 'x');
  json_object* parent = nullptr;
  const char* key = nullptr;
  expectAllocations(
      1, {{"key", [&] { JsonData::getJObj(wifi_->jobj, "radios.[0].ssid", parent, key); }},
          {"long path", [&] { JsonData::getJObj(wifi_->jobj, path.c_str()); }}});
  delete[] key;
}

TEST_F(Allocations, NoneToLogALine) {
  const std::string longer(3000, 'x');
  const Step lines[] = {
      {"short", [] { Logger::print(LOG_INFO, LOG_GROUP_UTIL, "%s: %d\n", "line", 1); }},
      {"cut", [&] { Logger::print(LOG_ERROR, LOG_GROUP_UTIL, "%s\n", longer.c_str()); }},
      {"number", [] { Logger::print(LOG_DEBUG, LOG_GROUP_UTIL, "%f %p\n", 0.1, nullptr); }}};
  for (const bool on : {false, true}) {
    switchLog(on);
    expectAllocations(0, {std::begin(lines), std::end(lines)});
  }
  BEConfig::LOG_FILE = dir_ / "no folder/log";
  expectAllocations(0, {std::begin(lines), std::end(lines)});
}

TEST_F(Allocations, NoneToRefuseALock) {
  const std::string longer(1000, 'k');
  for (const bool on : {false, true}) {
    switchLog(on);
    for (const char* const key : {"default", "unknown", longer.c_str()}) {
      expectAllocations(
          0, {{key, [=] { EXPECT_EQ(nullptr, LocalDbCtrl::lockDbObject(API_WIFI, "", key)); }}});
    }
    expectAllocations(0, {{"no key", [] { LocalDbCtrl::lockDbObject(API_WIFI, "", nullptr); }},
                          {"no area", [] { LocalDbCtrl::lockDbObject(8, "", nullptr); }},
                          {"not held", [] { LocalDbCtrl::unlockDbObject(API_QOS, "default"); }}});
  }
}

}  // namespace
