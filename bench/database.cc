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

// An area as one would write it by hand.
struct Area {
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  bool isLocked = false;
  Json database = parsed(gatewayText());
};

using Areas = std::map<std::string, Area>;

void addLocking() {
  addCase("lock/floor", [] {
    auto areas = std::make_shared<Areas>();
    (*areas)["default"];
    return [=] {
      Area& area = areas->find("default")->second;
      pthread_mutex_lock(&area.mutex);
      area.isLocked = true;
      json_object* value = nullptr;
      json_object_object_get_ex(area.database.get(), kPath, &value);
      auto* const handle = new TreeMapObject(json_object_get(value));
      delete handle;
      area.isLocked = false;
      pthread_mutex_unlock(&area.mutex);
      return handle;
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
