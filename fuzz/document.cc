// Any file as a document. A copy is what rendering and parsing gives, and so is what is saved and
// loaded: json-c takes some numbers that no JSON has ("-019e" renders as "-019", which reads as
// -19), so equal to the document itself is only what has been loaded once before. What does not
// load is not saved over anything. No lone number at the very end of a file loads, so what comes
// back is looked at for objects and arrays.
#include <cstdint>
#include <memory>

#include "fuzz/fuzz.h"
#include "hearth/json_data.h"
#include "hearth/tree_map_object.h"
#include "json/depth.h"

namespace {

using Handle = std::unique_ptr<TreeMapObject>;

// What rendering and parsing gives.
std::string rendered(json_object* value) {
  return fuzz::plain(fuzz::JsonRef(json_tokener_parse(json_object_to_json_string(value))).get());
}

void copies(const TreeMapObject& document) {
  const Handle copy(document.clone(nullptr));
  fuzz::claim(copy != nullptr, "a document that loads can be copied");
  fuzz::claim(fuzz::plain(copy->jobj) == rendered(document.jobj),
              "a copy is the rendered and parsed document:", fuzz::plain(copy->jobj));
}

Handle savedAndLoaded(TreeMapObject& document) {
  fuzz::claim(JsonData::saveObjectToFile("out", &document) == 0, "a document that loads saves");
  Handle loaded(JsonData::createObjectFromFile("out"));
  fuzz::claim(loaded != nullptr && fuzz::plain(loaded->jobj) == rendered(document.jobj),
              "what is saved loads:", fuzz::Folder::read("out"));
  return loaded;
}

void comesBack(TreeMapObject& document) {
  const Handle loaded = savedAndLoaded(document);
  const Handle again = savedAndLoaded(*loaded);
  fuzz::claim(fuzz::plain(again->jobj) == fuzz::plain(loaded->jobj),
              "what was loaded loads equal:", fuzz::plain(loaded->jobj));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const fuzz::Folder folder;
  const std::string input(reinterpret_cast<const char*>(data), size);
  fuzz::Folder::write("in", input);
  const Handle document(JsonData::createObjectFromFile("in"));
  fuzz::claim(document != nullptr, "a file that exists gives a handle");
  if (document->jobj != nullptr) {
    copies(*document);
    if (hearth::isContainer(document->jobj)) {
      comesBack(*document);
    }
  } else {
    fuzz::claim(
        JsonData::saveObjectToFile("in", document.get()) == 2 && fuzz::Folder::read("in") == input,
        "what did not load stays as it is");
  }
  return 0;
}
