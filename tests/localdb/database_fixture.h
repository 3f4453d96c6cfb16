// A small language for tests of the local database: a data directory of its own with one file per
// area, events that are written as words, and other threads that hold slots.
#ifndef HEARTH_TESTS_LOCALDB_DATABASE_FIXTURE_H
#define HEARTH_TESTS_LOCALDB_DATABASE_FIXTURE_H

#include <future>

#include "hearth/hearth.h"
#include "tests/support/captured_log.h"
#include "tests/support/scratch.h"

constexpr char kFreshFile[] = R"({"count": 0, "radios": {"channel": 1}})";

class DatabaseTest : public Scratch {
 protected:
  DatabaseTest() {
    BEConfig::DATA_LOCATION = ".";
    for (const std::string area : API_DATA_DIR) {
      folder_.file(area + "/" + area + ".ldb", kFreshFile);
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
    const Handle file(JsonData::createObjectFromFile(LocalDbCtrl::getFileName(area)));
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
};

// Does with the area (wifi if none is said) what the event says, "lock PATH", "save" or "unlock",
// and gives the answer as text: "handle" or "null" of a lock, "0" or "2" of the others.
inline std::string answerTo(const std::string& event, const char* key = "default",
                            API_TYPE_T area = API_WIFI) {
  if (event == "save") {
    return std::to_string(LocalDbCtrl::saveDbObject(area, key));
  }
  if (event == "unlock") {
    return std::to_string(LocalDbCtrl::unlockDbObject(area, key));
  }
  const std::string path = event.substr(event.find(' ') + 1);
  TreeMapObject* const handle = LocalDbCtrl::lockDbObject(area, path.c_str(), key);
  const Handle borrowed(path.empty() ? nullptr : handle);
  return handle != nullptr ? "handle" : "null";
}

#endif
