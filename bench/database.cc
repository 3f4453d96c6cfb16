// The local database: lock and unlock, and what requests cost with every log switch on.
#include <pthread.h>

#include <map>
#include <string>

#include "bench/bench.h"
#include "bench/documents.h"
#include "bench/surroundings.h"
#include "hearth/local_db_ctrl.h"
#include "hearth/tree_map_object.h"

namespace bench {
namespace {

constexpr char kPath[] = "system";

// The areas as one would write them by hand: found by their session's key, for both steps, under a
// mutex of their own.
class Areas {
 public:
  Areas() { areas_["default"]; }

  TreeMapObject* lock(const char* session) {
    Area& area = find(session);
    pthread_mutex_lock(&area.mutex);
    area.isLocked = true;
    json_object* value = nullptr;
    json_object_object_get_ex(area.database.get(), kPath, &value);
    return new TreeMapObject(json_object_get(value));
  }

  bool unlock(const char* session) {
    Area& area = find(session);
    area.isLocked = false;
    return pthread_mutex_unlock(&area.mutex) == 0;
  }

 private:
  struct Area {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    bool isLocked = false;
    Json database = parsed(gatewayText());
  };

  Area& find(const char* session) {
    pthread_mutex_lock(&mutex_);
    Area& area = areas_.find(session)->second;
    pthread_mutex_unlock(&mutex_);
    return area;
  }

  pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;
  std::map<std::string, Area> areas_;
};

void addLocking() {
  addCase("lock/floor", [] {
    return [areas = std::make_shared<Areas>()] {
      delete areas->lock("default");
      return areas->unlock("default");
    };
  });
  addCase("lock/hearth", [] {
    startDatabase();
    return [] {
      TreeMapObject* const handle = LocalDbCtrl::lockDbObject(API_WIFI, kPath, "default");
      delete handle;
      LocalDbCtrl::unlockDbObject(API_WIFI, "default");
      return handle;
    };
  });
}

// A request: takes an area, reads ten values of a network, writes one, and keeps the area.
bool request() {
  TreeMapObject* const network =
      LocalDbCtrl::lockDbObject(API_WIFI, "wifi.radios.[1].networks.[2]", "default");
  bool isOn = false;
  for (int i = 0; i < 10; ++i) {
    isOn = network->get<bool>("enabled");
  }
  network->set("limits.clients", 16);
  delete network;
  LocalDbCtrl::unlockDbObject(API_WIFI, "default");
  return isOn;
}

// Ten requests in a row, with the log as it is for a benchmark and as a gateway ships it.
void addBurst() {
  const auto tenRequests = [] {
    bool isOn = false;
    for (int i = 0; i < 10; ++i) {
      isOn = request();
    }
    return isOn;
  };
  addCase("burst/off", [=] {
    startDatabase();
    return tenRequests;
  });
  addCase("burst/console", [=] {
    startDatabase();
    return
        [=, logs = std::make_shared<LogSwitches>(LogSwitches::kConsole)] { return tenRequests(); };
  });
  addCase("burst/file+console", [=] {
    startDatabase();
    return [=, logs = std::make_shared<LogSwitches>(LogSwitches::kFileAndConsole)] {
      return tenRequests();
    };
  });
}

}  // namespace

void addDatabaseCases() {
  addLocking();
  addBurst();
}

}  // namespace bench
