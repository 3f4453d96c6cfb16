// The kit beside the same work written by hand on the contract.
#include "hearth/kit.h"

#include <functional>
#include <memory>
#include <string>

#include "bench/bench.h"
#include "bench/documents.h"
#include "bench/surroundings.h"

namespace bench {
namespace {

constexpr char kSchema[] =
    R"({"type": "object", "required": ["system", "wifi"],
        "properties": {"system": {"properties": {"hostname": {"maxLength": 63}}}}})";
constexpr char kPath[] = "system.hostname";

std::string startCheckedDatabase() {
  startDatabase();
  std::string schema = *hearth::databaseSchemaFile(API_WIFI);
  writeFile(schema, kSchema);
  return schema;
}

// A change of one member, compared with the area's schema and saved. By hand it is made in place;
// the kit's copy of the document stands in the floor as well, so that the ratio is what the kit
// adds.
void addChange() {
  addCase("change/floor", [] {
    return [schema = startCheckedDatabase()] {
      TreeMapObject* const database = LocalDbCtrl::lockDbObject(API_WIFI, "", "default");
      json_object_put(JsonData::cloneObject(database->jobj));
      database->set<const char*>(kPath, "gateway");
      const bool isValid = JsonData::validateFile(database, schema.c_str()) == 0;
      return isValid && LocalDbCtrl::saveDbObject(API_WIFI, "default") == 0;
    };
  });
  addCase("change/hearth", [] {
    return [schema = startCheckedDatabase()] {
      hearth::Result<hearth::Change> change = hearth::Change::begin(API_WIFI, "");
      return static_cast<bool>(change->set(kPath, "gateway").commit());
    };
  });
}

template <typename ByHand, typename ByKit>
void addReads(const std::string& row, const char* path) {
  const auto prepared = [] {
    return std::make_shared<TreeMapObject>(json_object_get(parsed(gatewayText()).get()));
  };
  addCase(row + "/floor", [=] {
    return [=, document = prepared()] {
      ByHand value{};
      return document->get_ex(path, value) ? value : ByHand{};
    };
  });
  addCase(row + "/hearth", [=] {
    return [=, document = prepared()] {
      return hearth::get<ByKit>(*document, path).value_or(ByKit{});
    };
  });
}

}  // namespace

void addKitCases() {
  addChange();
  addReads<int, int32_t>("exact_int", "wifi.radios.[1].networks.[2].limits.clients");
  addReads<const char*, std::string_view>("exact_text", kPath);
}

}  // namespace bench
