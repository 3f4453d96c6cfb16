// Whole documents: search, copy, load, save.

#include <sqlite3.h>

#include <cstring>
#include <fstream>
#include <list>
#include <nlohmann/json.hpp>

#include "bench/bench.h"
#include "bench/documents.h"
#include "bench/floor.h"
#include "hearth/json_data.h"
#include "hearth/tree_map_object.h"

namespace bench {
namespace {

constexpr int kManyRules = 5000;
constexpr int kSoughtPort = 1024 + 4321;

std::shared_ptr<TreeMapObject> handleOn(const std::string& text) {
  return std::shared_ptr<TreeMapObject>(JsonData::createObject(text.c_str()));
}

// --- Search --------------------------------------------------------------------------------------

void findByHand(json_object* value, std::list<TreeMapObject*>& found) {
  if (json_object_is_type(value, json_type_array) != 0) {
    const size_t length = json_object_array_length(value);
    for (size_t i = 0; i < length; ++i) {
      findByHand(json_object_array_get_idx(value, i), found);
    }
  } else if (json_object_is_type(value, json_type_object) != 0) {
    json_object_object_foreach(value, name, member) {
      const json_type type = json_object_get_type(member);
      if (type == json_type_object || type == json_type_array) {
        findByHand(member, found);
      } else if (strcmp(name, "port") == 0 && type == json_type_int &&
                 json_object_get_int(member) == kSoughtPort) {
        found.push_back(new TreeMapObject(json_object_get(value)));
      }
    }
  }
}

void findInPeer(const nlohmann::json& value, std::vector<const nlohmann::json*>& found) {
  if (value.is_object()) {
    for (const auto& [name, member] : value.items()) {
      if (member.is_structured()) {
        findInPeer(member, found);
      } else if (name == "port" && member.is_number_integer() && member == kSoughtPort) {
        found.push_back(&value);
      }
    }
  } else {
    for (const auto& element : value) {
      findInPeer(element, found);
    }
  }
}

size_t counted(const std::list<TreeMapObject*>& found) {
  for (TreeMapObject* const handle : found) {
    delete handle;
  }
  return found.size();
}

void addSearch() {
  addCase("find1m/floor", [] {
    return [root = parsed(firewallText(kManyRules))] {
      std::list<TreeMapObject*> found;
      findByHand(root.get(), found);
      return counted(found);
    };
  });
  addCase("find1m/hearth", [] {
    return [handle = handleOn(firewallText(kManyRules))] {
      return counted(handle->find<int>("port", kSoughtPort));
    };
  });
  addCase("find1m/nlohmann", [] {
    return [root = nlohmann::json::parse(firewallText(kManyRules))] {
      std::vector<const nlohmann::json*> found;
      findInPeer(root, found);
      return found.size();
    };
  });
}

// --- Copies --------------------------------------------------------------------------------------

void addCopy() {
  addCase("copy20k/floor", [] {
    return [root = parsed(gatewayText())] {
      json_object* copy = nullptr;
      json_object_deep_copy(root.get(), &copy, nullptr);
      return json_object_put(copy);
    };
  });
  addCase("copy20k/hearth", [] {
    return [root = parsed(gatewayText())] {
      return json_object_put(JsonData::cloneObject(root.get()));
    };
  });
  addCase("copy20k/render+parse", [] {
    return [root = parsed(gatewayText())] {
      return json_object_put(json_tokener_parse(json_object_to_json_string(root.get())));
    };
  });
  addCase("copy20k/nlohmann", [] {
    return [root = nlohmann::json::parse(gatewayText())] {
      const nlohmann::json copy = root;
      return copy.size();
    };
  });
}

// --- Files ---------------------------------------------------------------------------------------

void addLoad(const std::string& row, std::string (*text)()) {
  addCase(row + "/floor", [=] {
    writeFile(fileIn("load"), text());
    return [path = fileIn("load")] { return json_object_put(json_object_from_file(path.c_str())); };
  });
  addCase(row + "/hearth", [=] {
    writeFile(fileIn("load"), text());
    return [path = fileIn("load")] {
      TreeMapObject* const handle = JsonData::createObjectFromFile(path.c_str());
      const json_object* const value = handle->jobj;
      delete handle;
      return value;
    };
  });
  addCase(row + "/nlohmann", [=] {
    writeFile(fileIn("load"), text());
    return [path = fileIn("load")] {
      std::ifstream file(path);
      return nlohmann::json::parse(file).size();
    };
  });
}

// One document in one row, replaced in a transaction of its own.
class Database {
 public:
  Database() {
    sqlite3_open(fileIn("save.sqlite").c_str(), &database_);
    sqlite3_exec(database_,
                 "PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL;"
                 "CREATE TABLE IF NOT EXISTS area (name TEXT PRIMARY KEY, document TEXT)",
                 nullptr, nullptr, nullptr);
    sqlite3_prepare_v2(database_, "REPLACE INTO area VALUES ('wifi', ?)", -1, &replace_, nullptr);
  }
  ~Database() {
    sqlite3_finalize(replace_);
    sqlite3_close(database_);
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  int save(const char* text, size_t size) {
    sqlite3_bind_text(replace_, 1, text, static_cast<int>(size), SQLITE_STATIC);
    const int result = sqlite3_step(replace_);
    sqlite3_reset(replace_);
    return result;
  }

 private:
  sqlite3* database_ = nullptr;
  sqlite3_stmt* replace_ = nullptr;
};

void addSave(const std::string& row, std::string (*text)()) {
  addCase(row + "/floor", [=] {
    return [root = parsed(text()), path = fileIn("save")] {
      return saveByHand(root.get(), path, true);
    };
  });
  addCase(row + "/hearth", [=] {
    return [handle = handleOn(text()), path = fileIn("save")] {
      return JsonData::saveObjectToFile(path.c_str(), handle.get());
    };
  });
  addCase(row + "/sqlite", [=] {
    return [root = parsed(text()), database = std::make_shared<Database>()] {
      size_t size = 0;
      const char* const rendered =
          json_object_to_json_string_length(root.get(), JSON_C_TO_STRING_PRETTY, &size);
      return database->save(rendered, size);
    };
  });
}

std::string largeText() {
  return firewallText(kManyRules);
}

}  // namespace

void addDocumentCases() {
  addSearch();
  addCopy();
  addLoad("load20k", gatewayText);
  addLoad("load1m", largeText);
  addSave("save20k", gatewayText);
  addSave("save1m", largeText);
}

}  // namespace bench
