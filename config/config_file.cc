// Reads the configuration file: one walk over the table of its keys. Each key is looked up in its
// section and goes to its setting; one that is missing or of a wrong type leaves the default, with
// two lines on standard output. The login records are started last, if at all.
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

// Reads a key that must be a text. False, with a line, leaves the setting as it was.
bool readText(json_object* object, const char* key, std::string& setting) {
  json_object* const value = memberOf(object, key);
  if (json_object_is_type(value, json_type_string) != 0) {
    try {
      setting.assign(json_object_get_string(value),
                     static_cast<std::size_t>(json_object_get_string_len(value)));
      return true;
    } catch (const std::bad_alloc&) {
      // Reported like a wrong key.
    }
  }
  puts("Configuration error, parameter MUST be string");
  return false;
}

// Reads a key that must be a number or a switch. False, with a line, leaves the setting as it was.
bool readNumber(json_object* object, const char* key, int32_t& setting) {
  json_object* const value = memberOf(object, key);
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

// Sixty times the number, or the nearest number that 32 bits hold.
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

// One reading of the file. A section is null when the file does not have it. It may also be a value
// that is no object, in which every key is missing.
class Configuration {
 public:
  explicit Configuration(json_object* root) {
    sections_[kRoot] = root;
    sections_[kSystem] = memberOf(root, "system");
    sections_[kTimer] = memberOf(sections_[kSystem], "timer");
  }

  void apply();
  bool startsLoginRecords() const { return loginRecords_ == 1; }

 private:
  void apply(const ConfigKey& key);
  // Reads the key into the one of the two that is not null.
  void read(const ConfigKey& key, std::string* text, int32_t* number) const;

  json_object* sections_[kSectionCount];
  int32_t loginRecords_ = 1;  // as if the file said so when it says nothing
};

void Configuration::apply() {
  for (const ConfigKey& key : kConfigKeys) {
    if (sections_[key.section] != nullptr) {  // keys of a missing section are passed over silently
      apply(key);
    }
  }
}

// The multiplication and the prefix are applied whether the key was read or not: a default in
// minutes becomes seconds too.
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
  const bool isRead =
      text != nullptr ? readText(object, key.name, *text) : readNumber(object, key.name, *number);
  if (!isRead) {
    printf("Configuration is wrong, use default value for %s\n", key.name);
  }
}

}  // namespace
}  // namespace hearth

void BEConfig::init(const char* path) {
  const hearth::NoCancellation guard;
  // Only the first caller goes on, whatever its file turns out to be.
  if (__atomic_exchange_n(&isInit, true, __ATOMIC_ACQ_REL)) {
    HEARTH_LOG(LOG_WARNING, "%s: System configure is initialized already\n", "BEConfig::init");
    return;
  }
  hearth::JsonRef document(hearth::readJsonFile(path));
  if (document == nullptr) {  // no file, or no JSON in it: every default stays
    return;
  }
  if (json_object_is_type(document.get(), json_type_object) == 0) {
    document.reset();  // exit() does not unwind this function
    printf("Configuration file %s has wrong format, exit...\n", path);
    exit(EXIT_SUCCESS);
  }
  hearth::Configuration configuration(document.get());
  configuration.apply();
  if (configuration.startsLoginRecords()) {
    BELoginRecord::init();
  }
}
