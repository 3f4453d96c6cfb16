// Instantiates what users instantiate; that it compiles is the test.
#include "hearth/kit.h"

bool useAll(const TreeMapObject& document);

bool useAll(const TreeMapObject& document) {
  bool isGood = hearth::get<uint8_t>(document, "a") && hearth::get<unsigned long>(document, "a") &&
                hearth::get<double>(document, "a") && hearth::get<bool>(document, "a") &&
                hearth::get<std::string>(document, "a") && hearth::getOr(document, "a", "b") == "b";
  for (const auto& [name, value] : hearth::members(document, "a")) {
    isGood = isGood && hearth::set(document, std::string(name), value) &&
             hearth::append(document, nullptr) && hearth::remove(document, "b");
  }
  hearth::Result<hearth::Change> change =
      hearth::Change::begin(API_WIFI, "a", hearth::Session::shared(), std::chrono::seconds(1));
  return isGood && change && change->set("a", 1U).set("b", *hearth::parse("1")).commit() &&
         hearth::validate(document, hearth::View());
}
