#include "examples/gatewayd/redaction.h"

#include <algorithm>
#include <iterator>

bool isSecret(const std::string& name) {
  static const char* const kSecrets[] = {"password", "passphrase",   "hash",     "salt",
                                         "secret",   "presharedKey", "devicePin"};
  return std::any_of(std::begin(kSecrets), std::end(kSecrets),
                     [&](const char* secret) { return name == secret; });
}

void removeSecrets(json_object* value) {
  if (json_object_is_type(value, json_type_array) != 0) {
    for (std::size_t i = 0; i < json_object_array_length(value); ++i) {
      removeSecrets(json_object_array_get_idx(value, i));
    }
  }
  if (json_object_is_type(value, json_type_object) == 0) {
    return;
  }
  json_object_object_foreach(value, name, member) {
    if (isSecret(name)) {
      json_object_object_del(value, name);
    } else {
      removeSecrets(member);
    }
  }
}
