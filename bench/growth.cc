// How costs grow: rows "depth", "width", "size", "sessions" and "records", each with ways "n" for
// growing numbers n. docs/performance.md shows them as plots.
#include <string>

#include "bench/bench.h"
#include "bench/documents.h"
#include "bench/surroundings.h"
#include "hearth/be_login_record.h"
#include "hearth/json_data.h"
#include "hearth/local_db_ctrl.h"
#include "hearth/tree_map_object.h"

namespace bench {
namespace {

std::string numbered(const std::string& row, int n, const char* way) {
  return "growth." + row + "." + std::to_string(n) + "/" + way;
}

// A path of so many member names.
std::string deepPath(int tokens) {
  std::string path = "level";
  for (int i = 1; i < tokens; ++i) {
    path += ".level";
  }
  return path;
}

void addDepth(int tokens) {
  const auto tree = [=] {
    Json root = parsed("{}");
    JsonData::setJObj(root.get(), deepPath(tokens).c_str(), json_object_new_int(1));
    return root;
  };
  addCase(numbered("depth", tokens, "hearth"), [=] {
    return [root = tree(), path = deepPath(tokens)] {
      return JsonData::getJObj(root.get(), path.c_str());
    };
  });
  addCase(numbered("depth", tokens, "floor"), [=] {
    return [=, root = tree()] {
      json_object* value = root.get();
      for (int i = 0; i < tokens; ++i) {
        json_object_object_get_ex(value, "level", &value);
      }
      return value;
    };
  });
}

void addWidth(int members) {
  const auto tree = [=] {
    Json root = parsed("{}");
    for (int i = 0; i < members; ++i) {
      json_object_object_add(root.get(), ("member" + std::to_string(i)).c_str(),
                             json_object_new_int(i));
      JsonData::setJObj(root.get(), "list.[-1]", nullptr);
      json_object* list = nullptr;
      json_object_object_get_ex(root.get(), "list", &list);
      json_object_array_put_idx(list, static_cast<size_t>(i), json_object_new_int(i));
    }
    return root;
  };
  addCase(numbered("width", members, "member"), [=] {
    return [root = tree(), path = "member" + std::to_string(members / 2)] {
      return JsonData::getJObj(root.get(), path.c_str());
    };
  });
  addCase(numbered("width", members, "element"), [=] {
    return [root = tree(), path = "list.[" + std::to_string(members / 2) + "]"] {
      return JsonData::getJObj(root.get(), path.c_str());
    };
  });
}

// Sizes in rules of about 200 bytes.
void addSize(int rules) {
  const auto document = [=] {
    return std::shared_ptr<TreeMapObject>(JsonData::createObject(firewallText(rules).c_str()));
  };
  addCase(numbered("size", rules, "find"),
          [=] { return [handle = document()] { return handle->find<int>("port", -1).size(); }; });
  addCase(numbered("size", rules, "copy"), [=] {
    return [handle = document()] { return json_object_put(JsonData::cloneObject(handle->jobj)); };
  });
  addCase(numbered("size", rules, "load"), [=] {
    writeFile(fileIn("grown"), firewallText(rules));
    return [path = fileIn("grown")] {
      TreeMapObject* const handle = JsonData::createObjectFromFile(path.c_str());
      const int error = handle->error;
      delete handle;
      return error;
    };
  });
  addCase(numbered("size", rules, "save"), [=] {
    return [handle = document(), path = fileIn("grown")] {
      return JsonData::saveObjectToFile(path.c_str(), handle.get());
    };
  });
}

void addSessions(int sessions) {
  addCase(numbered("sessions", sessions, "lock"), [=] {
    startDatabase(sessions);
    return [key = "session-" + std::to_string(sessions / 2)] {
      TreeMapObject* const handle = LocalDbCtrl::lockDbObject(API_WIFI, "", key.c_str());
      LocalDbCtrl::unlockDbObject(API_WIFI, key.c_str());
      return handle;
    };
  });
}

void addRecords(int records) {
  addCase(numbered("records", records, "attempt"), [=] {
    writeFile(".loginrecord.cfg", loginRecordsText(records));
    BELoginRecord::isRunning = true;
    return [address = loginAddress(records / 2)] {
      return BELoginRecord::setAttempt(address.c_str());
    };
  });
  addCase(numbered("records", records, "question"), [=] {
    writeFile(".loginrecord.cfg", loginRecordsText(records));
    BELoginRecord::isRunning = true;
    return [address = loginAddress(records / 2)] {
      return BELoginRecord::getAttempt(address.c_str()).attempts;
    };
  });
}

}  // namespace

void addGrowthCases() {
  for (const int tokens : {1, 2, 4, 8, 16, 32}) {
    addDepth(tokens);
  }
  for (const int members : {1, 10, 100, 1000, 10000}) {
    addWidth(members);
  }
  for (const int rules : {5, 50, 500, 5000}) {
    addSize(rules);
  }
  for (const int sessions : {1, 10, 100}) {
    addSessions(sessions);
  }
  for (const int records : {1, 10, 100, 1000}) {
    addRecords(records);
  }
}

}  // namespace bench
