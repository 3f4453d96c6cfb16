// A small language for tests of the local database: a data directory of its own with one file per
// area, log lines as text, and other threads that hold slots.
#ifndef HEARTH_TESTS_LOCALDB_DATABASE_FIXTURE_H
#define HEARTH_TESTS_LOCALDB_DATABASE_FIXTURE_H

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <future>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

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
    for (const std::string area : API_DATA_DIR) {
      data_.file(area + "/" + area + ".ldb", kFreshFile);
    }
    LocalDbCtrl::init();
  }
  ~DatabaseTest() override {
    while (!LocalDbCtrl::controllers.empty()) {
      LocalDbCtrl::removeDB(LocalDbCtrl::controllers.begin()->first.c_str());
    }
  }

  // A number in the area's file; -1 when the file or the value is missing.
  static int fileHolds(unsigned int area, const char* path) {
    const std::unique_ptr<TreeMapObject> file(
        JsonData::createObjectFromFile(LocalDbCtrl::getFileName(area)));
    int value = -1;
    return file != nullptr && file->get_ex(path, value) ? value : -1;
  }

  // Locks the whole area and sets its count; false when refused.
  static bool locked(unsigned int area, const char* key, int count = 1) {
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
  std::string linesOf(Action action,
                      const std::vector<LOG_TYPE_T>& severities = CapturedLog::all()) const {
    CapturedLog log(severities);
    action();
    std::string text = replaced(log.text(), data_.path(), "DATA");
    for (std::size_t at = 0; (at = text.find("0x", at)) != std::string::npos;) {
      text.replace(at, text.find_first_not_of("0123456789abcdef", at + 2) - at, "PTR");
    }
    return text;
  }

  // Another thread of the backend, which has locked an area and then does one thing more.
  class Holder {
   public:
    Holder(unsigned int area, const char* key, int count = 1)
        : thread_(std::async(std::launch::async, [=] {
            isLocked_.set_value(locked(area, key, count));
            return ending_.get_future().get()();
          })) {
      EXPECT_TRUE(isLocked_.get_future().get());
    }
    std::string end(std::function<std::string()> ending) {
      ending_.set_value(std::move(ending));
      return thread_.get();
    }

   private:
    std::promise<bool> isLocked_;
    std::promise<std::function<std::string()>> ending_;
    std::future<std::string> thread_;
  };

  const TempDir data_;
};

// Does what a word says with the area wifi: "lock PATH", "save" or "unlock"; gives the answer as
// text ("handle", "null", "0", "2").
inline std::string answerTo(const std::string& event, const char* key = "default") {
  if (event == "save") {
    return std::to_string(LocalDbCtrl::saveDbObject(API_WIFI, key));
  }
  if (event == "unlock") {
    return std::to_string(LocalDbCtrl::unlockDbObject(API_WIFI, key));
  }
  const std::string path = event.substr(event.find(' ') + 1);
  TreeMapObject* const handle = LocalDbCtrl::lockDbObject(API_WIFI, path.c_str(), key);
  const std::unique_ptr<TreeMapObject> borrowed(path.empty() ? nullptr : handle);
  return handle != nullptr ? "handle" : "null";
}

#endif
