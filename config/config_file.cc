// The configuration file: one walk over the table of its keys.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>

#include "base/json_ref.h"
#include "base/no_cancellation.h"
#include "config/config_keys.h"
#include "hearth/be_config.h"
#include "hearth/be_login_record.h"
#include "json/json_file.h"
#include "log/library_log.h"

namespace hearth {
namespace {

bool getStringParam(json_object* object, const char* key, std::string& setting) {
  json_object* value = nullptr;
  if (json_object_object_get_ex(object, key, &value) != 0 &&
      json_object_is_type(value, json_type_string) != 0) {
    try {
      setting.assign(json_object_get_string(value),
                     static_cast<std::size_t>(json_object_get_string_len(value)));
      return true;
    } catch (const std::bad_alloc&) {
      // Reported like a wrong key: the setting keeps its value.
    }
  }
  puts("Configuration error, parameter MUST be string");
  return false;
}

bool getIntegerParam(json_object* object, const char* key, int32_t& setting) {
  json_object* value = nullptr;
  json_object_object_get_ex(object, key, &value);
  switch (json_object_get_type(value)) {
    case json_type_int:
      setting = json_object_get_int(value);
      return true;
    case json_type_boolean:
      setting = json_object_get_boolean(value) != 0 ? 1 : 0;
      return true;
    default:
      puts("Configuration error, parameter MUST be integer or boolean");
      return false;
  }
}

// Sixty times the number, or the nearest one that fits.
int32_t minutesToSeconds(int32_t minutes) {
  using Limits = std::numeric_limits<int32_t>;
  return static_cast<int32_t>(
      std::clamp<int64_t>(int64_t{60} * minutes, Limits::min(), Limits::max()));
}

void putBefore(std::string& setting, const std::string& prefix) {
  try {
    setting.insert(0, prefix);
  } catch (const std::bad_alloc&) {
    // The setting stays without its prefix.
  }
}

json_object* objectIn(json_object* object, const char* name) {
  json_object* member = nullptr;
  json_object_object_get_ex(object, name, &member);
  return member;
}

// One reading of the file, and what is read for this call alone.
class Configuration {
 public:
  explicit Configuration(json_object* root) {
    sections_[kRoot] = root;
    sections_[kSystem] = objectIn(root, "system");
    sections_[kTimer] = objectIn(sections_[kSystem], "timer");
  }

  void apply();
  bool startsLoginRecords() const { return loginRecords_ == 1; }

 private:
  void apply(const ConfigKey& key);
  void read(const ConfigKey& key, std::string* text, int32_t* number) const;

  json_object* sections_[kSectionCount];
  int32_t loginRecords_ = 1;
};

void Configuration::apply() {
  for (const ConfigKey& key : kConfigKeys) {
    if (sections_[key.section] != nullptr) {  // else it is passed over in silence, with its keys
      apply(key);
    }
  }
}

// What follows a number or a prefix is done whether the key was read or not.
void Configuration::apply(const ConfigKey& key) {
  std::string prefix;
  switch (key.use) {
    case KeyUse::kPlain:
      read(key, key.text, key.number);
      break;
    case KeyUse::kPrefixesUrlRewrite:
      read(key, &prefix, nullptr);
      putBefore(*key.text, prefix);
      break;
    case KeyUse::kMinutesToSeconds:
      read(key, nullptr, key.number);
      *key.number = minutesToSeconds(*key.number);
      break;
    case KeyUse::kStartsLoginRecords:
      read(key, nullptr, &loginRecords_);
      break;
  }
}

void Configuration::read(const ConfigKey& key, std::string* text, int32_t* number) const {
  json_object* const object = sections_[key.section];
  const bool isRead = text != nullptr ? getStringParam(object, key.name, *text)
                                      : getIntegerParam(object, key.name, *number);
  if (!isRead) {
    printf("Configuration is wrong, use default value for %s\n", key.name);
  }
}

}  // namespace
}  // namespace hearth

void BEConfig::init(const char* path) {
  const hearth::NoCancellation guard;
  if (__atomic_exchange_n(&isInit, true, __ATOMIC_ACQ_REL)) {
    HEARTH_LOG(LOG_WARNING, "%s: System configure is initialized already\n", "BEConfig::init");
    return;
  }
  hearth::JsonRef document(hearth::readJsonFile(path));
  if (document == nullptr) {
    return;
  }
  if (json_object_is_type(document.get(), json_type_object) == 0) {
    document.reset();
    printf("Configuration file %s has wrong format, exit...\n", path);
    exit(EXIT_SUCCESS);
  }
  hearth::Configuration configuration(document.get());
  configuration.apply();
  if (configuration.startsLoginRecords()) {
    BELoginRecord::init();
  }
}
