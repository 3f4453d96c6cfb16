// The path operations of JsonData: the walks of json/path/lookup.h and json/path/store.h, with the
// results that callers are promised. The two kinds of key copies exist only here: reading gives one
// for delete[], and none for an empty token; writing gives one for free().
#include <cstring>
#include <new>

#include "base/status.h"
#include "hearth/json_data.h"
#include "json/path/lookup.h"
#include "json/path/store.h"

namespace hearth {
namespace {

// Null for an empty token, and without memory.
const char* newKeyCopy(const char* token) {
  const std::size_t size = std::strlen(token) + 1;
  char* copy = size > 1 ? new (std::nothrow) char[size] : nullptr;
  if (copy != nullptr) {
    std::memcpy(copy, token, size);
  }
  return copy;
}

}  // namespace
}  // namespace hearth

json_object* JsonData::getJObj(json_object* jobj, const char* path, json_object*& parent,
                               const char*& key) {
  using hearth::PathLookup;
  const PathLookup lookup(jobj, path);
  switch (lookup.outcome()) {
    case PathLookup::Outcome::kRefused:
      break;
    case PathLookup::Outcome::kRoot:
    case PathLookup::Outcome::kLostOnWay:
      parent = nullptr;
      key = nullptr;
      break;
    case PathLookup::Outcome::kFound:
    case PathLookup::Outcome::kMissing:
      parent = lookup.parent();
      key = hearth::newKeyCopy(lookup.lastToken());
      break;
  }
  return lookup.value();
}

json_object* JsonData::getJObj(json_object* jobj, const char* path) {
  return hearth::PathLookup(jobj, path).value();
}

int JsonData::setJObj(json_object* jobj, const char* path, json_object* jval, json_object*& parent,
                      const char*& key) {
  hearth::PathStore store(jobj, path, jval);
  if (!store.store()) {
    return hearth::kFailure;
  }
  parent = store.container();
  key = strdup(store.lastToken());
  return hearth::kSuccess;
}

int JsonData::setJObj(json_object* jobj, const char* path, json_object* jval) {
  return hearth::PathStore(jobj, path, jval).store() ? hearth::kSuccess : hearth::kFailure;
}
