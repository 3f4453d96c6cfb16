// The configuration file: one table of its keys, in the order in which they are looked up, and one
// walk over it.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>

#include "hearth/be_config.h"
#include "hearth/be_login_record.h"
#include "json/file_read.h"
#include "json/json_ref.h"
#include "log/log.h"

namespace hearth {
namespace {

// The object that holds a key: the root, "system" in the root, "timer" in "system".
enum Section { kRoot, kSystem, kTimer, kSectionCount };

// What happens to the setting after its key, whether the key was read or not.
enum class Then { kNothing, kPrefixUrlRewrite, kMinutesToSeconds };

// A key and the setting that it goes to, a text or a number.
struct Key {
  Key(const char* keyName, std::string& setting, Section place = kRoot,
      Then afterwards = Then::kNothing)
      : name(keyName), text(&setting), section(place), then(afterwards) {}
  Key(const char* keyName, int32_t& setting, Section place = kRoot,
      Then afterwards = Then::kNothing)
      : name(keyName), number(&setting), section(place), then(afterwards) {}

  const char* name;
  std::string* text = nullptr;
  int32_t* number = nullptr;
  Section section;
  Then then;
};

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

json_object* objectIn(json_object* object, const char* name) {
  json_object* member = nullptr;
  json_object_object_get_ex(object, name, &member);
  return member;
}

// One reading of the file: the table, the walk over it, and what is read for this call alone.
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
  void apply(const Key& key);
  bool read(const Key& key) const;
  void prefixUrlRewrite() const;

  json_object* sections_[kSectionCount];
  std::string urlRewritePath_;
  int32_t loginRecords_ = 1;
};

void Configuration::apply() {
  const Key keys[] = {
      {"webserver_ports", BEConfig::WEBSERVER_PORTS},
      {"ipv4_allow_ports", BEConfig::IPV4_ALLOW_PORTS},
      {"ipv6_allow_ports", BEConfig::IPV6_ALLOW_PORTS},
      {"lan_allow_ports", BEConfig::LAN_ALLOW_PORTS},
      {"wan_allow_ports", BEConfig::WAN_ALLOW_PORTS},
      {"wlan_allow_ports", BEConfig::WLAN_ALLOW_PORTS},
      {"data_location", BEConfig::DATA_LOCATION},
      {"webserver_docroot", BEConfig::WEBSERVER_DOCROOT},
      {"url_rewrite_path", urlRewritePath_, kRoot, Then::kPrefixUrlRewrite},
      {"download_storage", BEConfig::DOWNLOAD_STORAGE},
      {"upload_storage", BEConfig::UPLOAD_STORAGE},
      {"ssl_certification_file", BEConfig::SSL_CERTIFICATION_FILE},
      {"enable_check_duplicate", BEConfig::ENABLE_CHECK_DUPLICATE},
      {"duplicate_login_enable", BEConfig::DUPLICATE_LOGIN_ENABLE},
      {"log_file", BEConfig::LOG_FILE},
      {"enable_https", BEConfig::ENABLE_HTTPS},
      {"repo_type", BEConfig::REPO_TYPE},
      {"api_version", BEConfig::API_VERSION},
      {"enable_multidb_mode", BEConfig::MULTIDB_MODE_ENABLE},
      {"log_to_file", BEConfig::LOG_TO_FILE},
      {"log_debug_enable", BEConfig::LOG_DEBUG_ENABLE},
      {"log_warning_enable", BEConfig::LOG_WARNING_ENABLE},
      {"log_info_enable", BEConfig::LOG_INFO_ENABLE},
      {"log_error_enable", BEConfig::LOG_ERROR_ENABLE},
      {"log_mask", BEConfig::LOG_MASK},
      {"validation_on_response", BEConfig::VALIDATION_ON_RESPONSE},
      {"enable_bruteforce_prevent", loginRecords_},
      {"enable_cross_domain", BEConfig::ENABLE_CROSS_DOMAIN},
      {"enable_bypass_token", BEConfig::ENABLE_BYPASS_TOKEN},
      {"validation_on_request", BEConfig::VALIDATION_ON_REQUEST},
      {"cleanup_time", BEConfig::AUTH_CLEANUP, kSystem, Then::kMinutesToSeconds},
      {"domain_name", BEConfig::AUTH_SECRET_STR, kSystem},
      {"session", BEConfig::AUTH_EXPIRATION, kTimer, Then::kMinutesToSeconds},
  };
  for (const Key& key : keys) {
    apply(key);
  }
}

// A section that is not there is passed over in silence, with its keys.
void Configuration::apply(const Key& key) {
  if (sections_[key.section] == nullptr) {
    return;
  }
  if (!read(key)) {
    printf("Configuration is wrong, use default value for %s\n", key.name);
  }
  if (key.then == Then::kPrefixUrlRewrite) {
    prefixUrlRewrite();
  } else if (key.then == Then::kMinutesToSeconds) {
    *key.number = minutesToSeconds(*key.number);
  }
}

bool Configuration::read(const Key& key) const {
  json_object* const object = sections_[key.section];
  return key.text != nullptr ? getStringParam(object, key.name, *key.text)
                             : getIntegerParam(object, key.name, *key.number);
}

void Configuration::prefixUrlRewrite() const {
  try {
    BEConfig::URL_REWRITE.insert(0, urlRewritePath_);
  } catch (const std::bad_alloc&) {
    // The default stays without its prefix.
  }
}

}  // namespace
}  // namespace hearth

void BEConfig::init(const char* path) {
  if (__atomic_exchange_n(&isInit, true, __ATOMIC_ACQ_REL)) {
    HEARTH_LOG(LOG_WARNING, "%s: System configure is initialized already\n", "BEConfig::init");
    return;
  }
  hearth::JsonRef document(path == nullptr ? nullptr : hearth::readJsonFile(path));
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
