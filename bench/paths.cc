// Reading and writing values by path.
#include <rapidjson/document.h>
#include <rapidjson/pointer.h>

#include <memory>
#include <nlohmann/json.hpp>

#include "bench/bench.h"
#include "bench/documents.h"
#include "hearth/json_data.h"

namespace bench {
namespace {

constexpr char kDeepPath[] = "wifi.radios.[1].networks.[2].security.passphrase";
constexpr char kDeepPointer[] = "/wifi/radios/1/networks/2/security/passphrase";
constexpr char kShortPath[] = "system.hostname";
constexpr char kShortPointer[] = "/system/hostname";
constexpr char kNewPath[] = "one.two.three.four.value";
constexpr char kNewPointer[] = "/one/two/three/four/value";

json_object* member(json_object* object, const char* name) {
  json_object* found = nullptr;
  json_object_object_get_ex(object, name, &found);
  return found;
}

// The container of the deep path's value.
json_object* deepContainer(json_object* root) {
  json_object* const radios = member(member(root, "wifi"), "radios");
  json_object* const networks = member(json_object_array_get_idx(radios, 1), "networks");
  return member(json_object_array_get_idx(networks, 2), "security");
}

json_object* byPointer(json_object* root, const char* pointer) {
  json_object* found = nullptr;
  json_pointer_get(root, pointer, &found);
  return found;
}

std::shared_ptr<rapidjson::Document> rapidDocument(const std::string& text) {
  auto document = std::make_shared<rapidjson::Document>();
  document->Parse(text.c_str());
  return document;
}

// The ways to read besides the floor.
void addReads(const std::string& row, const char* path, const char* pointer) {
  addCase(row + "/hearth", [=] {
    return [=, root = parsed(gatewayText())] { return JsonData::getJObj(root.get(), path); };
  });
  addCase(row + "/hearth+key", [=] {
    return [=, root = parsed(gatewayText())] {
      json_object* parent = nullptr;
      const char* key = nullptr;
      json_object* const found = JsonData::getJObj(root.get(), path, parent, key);
      delete[] key;
      return found;
    };
  });
  addCase(row + "/json_pointer", [=] {
    return [=, root = parsed(gatewayText())] { return byPointer(root.get(), pointer); };
  });
  addCase(row + "/nlohmann", [=] {
    return [=, root = nlohmann::json::parse(gatewayText())] {
      return &root.at(nlohmann::json::json_pointer(pointer));
    };
  });
  addCase(row + "/rapidjson", [=] {
    return
        [=, root = rapidDocument(gatewayText())] { return rapidjson::Pointer(pointer).Get(*root); };
  });
}

void addReading() {
  addCase("read7/floor", [] {
    return
        [root = parsed(gatewayText())] { return member(deepContainer(root.get()), "passphrase"); };
  });
  addReads("read7", kDeepPath, kDeepPointer);
  addCase("read2/floor", [] {
    return
        [root = parsed(gatewayText())] { return member(member(root.get(), "system"), "hostname"); };
  });
  addReads("read2", kShortPath, kShortPointer);
}

// The value written is the same each time, so that no way pays for making it.
Json number() {
  return Json(json_object_new_int(7), json_object_put);
}

void addWriting() {
  addCase("write7/floor", [] {
    return [root = parsed(gatewayText()), value = number()] {
      return json_object_object_add(deepContainer(root.get()), "passphrase",
                                    json_object_get(value.get()));
    };
  });
  addCase("write7/hearth", [] {
    return [root = parsed(gatewayText()), value = number()] {
      return JsonData::setJObj(root.get(), kDeepPath, value.get());
    };
  });
  addCase("write7/json_pointer", [] {
    return [root = parsed(gatewayText()), value = number()] {
      json_object* tree = root.get();
      return json_pointer_set(&tree, kDeepPointer, json_object_get(value.get()));
    };
  });
  addCase("write7/nlohmann", [] {
    return [root = nlohmann::json::parse(gatewayText())]() mutable {
      return &(root[nlohmann::json::json_pointer(kDeepPointer)] = 7);
    };
  });
  addCase("write7/rapidjson", [] {
    return [root = rapidDocument(gatewayText())] {
      return &rapidjson::Pointer(kDeepPointer).Set(*root, 7);
    };
  });
}

// Makes four objects inside each other and a member, and removes them.
void addCreating() {
  addCase("create4/floor", [] {
    return [root = parsed("{}"), value = number()] {
      json_object* container = root.get();
      for (const char* const name : {"one", "two", "three", "four"}) {
        json_object* const made = json_object_new_object();
        json_object_object_add(container, name, made);
        container = made;
      }
      json_object_object_add(container, "value", json_object_get(value.get()));
      json_object_object_del(root.get(), "one");
      return container;
    };
  });
  addCase("create4/hearth", [] {
    return [root = parsed("{}"), value = number()] {
      const int result = JsonData::setJObj(root.get(), kNewPath, value.get());
      json_object_object_del(root.get(), "one");
      return result;
    };
  });
  // json-c's pointers make one level each.
  addCase("create4/json_pointer", [] {
    return [root = parsed("{}"), value = number()] {
      json_object* tree = root.get();
      for (const char* const pointer :
           {"/one", "/one/two", "/one/two/three", "/one/two/three/four"}) {
        json_pointer_set(&tree, pointer, json_object_new_object());
      }
      const int result = json_pointer_set(&tree, kNewPointer, json_object_get(value.get()));
      json_object_object_del(tree, "one");
      return result;
    };
  });
  addCase("create4/nlohmann", [] {
    return [root = nlohmann::json::object()]() mutable {
      root[nlohmann::json::json_pointer(kNewPointer)] = 7;
      return root.erase("one");
    };
  });
}

}  // namespace

void addPathCases() {
  addReading();
  addWriting();
  addCreating();
}

}  // namespace bench
