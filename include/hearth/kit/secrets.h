// Secrets: members whose values are set and used, but never logged, shown or quoted.
//
// Whether a value is a secret is decided by the names on the way to it: "password", "passphrase",
// "presharedKey" and the like, in any mixture of capitals, '_' and '-'. A backend adds names of its
// own at start-up. The kit asks here before it quotes a value in a sentence of a violation.
#ifndef HEARTH_KIT_SECRETS_H
#define HEARTH_KIT_SECRETS_H

#include <json-c/json.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hearth/kit/handle.h"
#include "hearth/kit/render.h"
#include "hearth/kit/result.h"
#include "hearth/kit/text.h"
#include "hearth/kit/walk.h"
#include "hearth/kit/write.h"
#include "hearth/logger.h"

namespace hearth {
namespace detail {

// Small letters, without '_' and '-', sorted.
inline std::vector<std::string>& secretNames() {
  static std::vector<std::string> names = {
      "accesskey",    "accesstoken", "adminpassword", "apikey",
      "clientsecret", "credential",  "credentials",   "currentpassword",
      "devicepin",    "hash",        "key",           "newpassword",
      "oldpassword",  "passphrase",  "passwd",        "password",
      "passwordhash", "passwords",   "pin",           "presharedkey",
      "privatekey",   "psk",         "puk",           "refreshtoken",
      "salt",         "secret",      "secretkey",     "secrets",
      "sessiontoken", "sharedkey",   "sharedsecret",  "token",
      "wepkey",       "wpakey",      "wpapassphrase",
  };
  return names;
}

inline std::string plainName(std::string_view name) {
  std::string plain;
  for (const char c : name) {
    if (c != '_' && c != '-') {
      plain.push_back(c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c);
    }
  }
  return plain;
}

}  // namespace detail

// What stands for a secret's value.
constexpr const char* kSecretShown = "(secret)";

// Makes members with this name secrets, for the whole process.
// Threads: call it at start-up, before other threads exist.
inline void addSecretName(Text name) {
  std::vector<std::string>& names = detail::secretNames();
  std::string plain = detail::plainName(name.view());
  const auto place = std::lower_bound(names.begin(), names.end(), plain);
  if (!plain.empty() && (place == names.end() || *place != plain)) {
    names.insert(place, std::move(plain));
  }
}

// True for the name of a member that holds a secret. Threads: any.
inline bool isSecretName(Text name) {
  const std::vector<std::string>& names = detail::secretNames();
  return std::binary_search(names.begin(), names.end(), detail::plainName(name.view()));
}

// True when a path ("wifi.[0].passphrase") leads to a secret or into one.
inline bool leadsToSecret(Text path) {
  std::string_view rest = path.view();
  while (!rest.empty()) {
    const std::size_t dot = std::min(rest.find('.'), rest.size());
    if (isSecretName(rest.substr(0, dot))) {
      return true;
    }
    rest.remove_prefix(std::min(dot + 1, rest.size()));
  }
  return false;
}

namespace detail {

// True also for what is nested too deeply to be looked through.
inline bool holdsSecret(View value, int levels = kMostLevels) {
  if (levels == 0) {
    return true;
  }
  for (const Member& member : members(value)) {
    if (isSecretName(member.name) || holdsSecret(member.value, levels - 1)) {
      return true;
    }
  }
  for (const View element : elements(value)) {
    if (holdsSecret(element, levels - 1)) {
      return true;
    }
  }
  return false;
}

// The value is a copy, and so no deeper than the parser reads.
inline void takeOutSecrets(View value, bool leavesSign) {
  for (const Member& member : members(value)) {
    if (!isSecretName(member.name)) {
      takeOutSecrets(member.value, leavesSign);
    } else if (leavesSign) {
      // The member is there: json-c replaces its value in place, also while this walk is at it.
      json_object_object_add(value.raw(), member.name.data(), json_object_new_string(kSecretShown));
    } else {
      json_object_object_del(value.raw(), member.name.data());
    }
  }
  for (const View element : elements(value)) {
    takeOutSecrets(element, leavesSign);
  }
}

}  // namespace detail

// A copy of the value without the members that are secrets, to be sent to a client.
// Failure: kNotStored for a value nested deeper than the parser reads, or without memory.
inline Result<Value> withoutSecrets(View value) {
  Result<Value> copied = copy(value);
  if (copied) {
    detail::takeOutSecrets(*copied, false);
  }
  return copied;
}

// The value as JSON text on one line, with "(secret)" where a secret stands. "null" for nothing.
inline std::string shown(View value) {
  const Result<Value> copied = copy(value);
  if (!copied) {
    return "(" + copied.failure().sentence + ")";
  }
  detail::takeOutSecrets(*copied, true);
  return toText(*copied);
}

// The same of the value at path; "(secret)" when the path leads to one.
inline std::string shown(View document, Name path) {
  return !path.isNull() && leadsToSecret(path.get()) ? kSecretShown : shown(find(document, path));
}

// Logs the value at path ("" for the whole) as LOG_INFO, as shown; log lines are cut at 1,023
// bytes. JsonData::dumpObject and TreeMapObject::dump log secrets as they are.
inline void dump(View document, Name path, LOG_GROUP_T group = LOG_GROUP_UTIL) {
  Logger::print(LOG_INFO, group, "%s: %s\n", path.isNull() ? "(null)" : path.get(),
                shown(document, path).c_str());
}

}  // namespace hearth

#endif
