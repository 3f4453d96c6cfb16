// A small language for tests of the local database: a data directory of its own with one file per
// area, the log as text, and threads that hold slots.
#ifndef HEARTH_TESTS_LOCALDB_DATABASE_FIXTURE_H
#define HEARTH_TESTS_LOCALDB_DATABASE_FIXTURE_H

#include <gtest/gtest.h>

#include <condition_variable>
#include <filesystem>
#include <functional>
#include <future>
#include <iterator>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

#include "hearth/hearth.h"
#include "tests/support/captured_log.h"
#include "tests/support/temp_dir.h"

constexpr char kFreshFile[] = R"({"count": 0, "radios": {"channel": 1}})";

inline std::string replaced(std::string text, const std::string& part, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += by.size()) {
    text.replace(at, part.size(), by);
  }
  return text;
}

class DatabaseTest : public testing::Test {
 protected:
  DatabaseTest() {
    BEConfig::DATA_LOCATION = data_.path();
    for (unsigned int area = 0; area < std::size(API_DATA_DIR); ++area) {
      writeFile(area, kFreshFile);
    }
    LocalDbCtrl::init();
  }
  ~DatabaseTest() override {
    while (!LocalDbCtrl::controllers.empty()) {
      LocalDbCtrl::removeDB(LocalDbCtrl::controllers.begin()->first.c_str());
    }
  }

  void writeFile(unsigned int area, const char* text) const {
    const std::string name = API_DATA_DIR[area];
    data_.file(name + "/" + name + ".ldb", text);
  }
  static void removeFile(unsigned int area) {
    std::filesystem::remove(LocalDbCtrl::getFileName(area));
  }
  // A number in the area's file; -1 when the file or the value is missing.
  static int fileHolds(unsigned int area, const char* path) {
    const std::unique_ptr<TreeMapObject> file(
        JsonData::createObjectFromFile(LocalDbCtrl::getFileName(area)));
    int value = -1;
    return file != nullptr && file->get_ex(path, value) ? value : -1;
  }

  // Locks the whole area and sets its count; false when refused.
  static bool lockAndCount(unsigned int area, const char* key, int count) {
    TreeMapObject* const database = LocalDbCtrl::lockDbObject(area, "", key);
    if (database != nullptr) {
      database->set("count", count);
    }
    return database != nullptr;
  }
  static LOCALDB_STATE_T stateOf(unsigned int area, const char* key = "default") {
    return __atomic_load_n(&LocalDbCtrl::controllers.at(key)->state[area], __ATOMIC_ACQUIRE);
  }

  // What the action logs, but for addresses (PTR) and the data directory (DATA).
  template <typename Action>
  std::string linesOf(Action action) const {
    CapturedLog log;
    action();
    std::string text = replaced(log.text(), data_.path(), "DATA");
    for (std::size_t at = 0; (at = text.find("0x", at)) != std::string::npos;) {
      text.replace(at, text.find_first_not_of("0123456789abcdef", at + 2) - at, "PTR");
    }
    return text;
  }
  // Only the lines of the lock protocol.
  template <typename Action>
  std::string protocolLinesOf(Action action) const {
    std::istringstream lines(linesOf(action));
    std::string kept;
    for (std::string line; std::getline(lines, line);) {
      kept += line.find("DbObject: ") != std::string::npos ? line + "\n" : "";
    }
    return kept;
  }

  const TempDir data_;
};

// Another thread of the backend: does one thing after another, and is waited for.
class Thread {
 public:
  Thread() = default;
  ~Thread() {
    give(nullptr);
    thread_.join();
  }
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  template <typename Action>
  auto run(Action action) {
    std::packaged_task<decltype(action())()> task(std::move(action));
    auto result = task.get_future();
    give([&task] { task(); });
    return result.get();
  }

 private:
  void give(std::function<void()> action) {
    const std::lock_guard<std::mutex> lock(mutex_);
    action_ = std::move(action);
    isGiven_ = true;
    changed_.notify_one();
  }
  std::function<void()> take() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return isGiven_; });
    isGiven_ = false;
    return std::move(action_);
  }
  void work() {
    while (const std::function<void()> action = take()) {
      action();
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::function<void()> action_;
  bool isGiven_ = false;
  std::thread thread_{[this] { work(); }};
};

#endif
