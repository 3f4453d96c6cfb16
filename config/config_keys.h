// The keys of the configuration file, in one table, for the reader and for tools that explain a
// file. Their order is the order in which they are looked up, and so the order of the complaints.
#ifndef HEARTH_CONFIG_CONFIG_KEYS_H
#define HEARTH_CONFIG_CONFIG_KEYS_H

#include <cstdint>
#include <string>

#include "hearth/be_config.h"

namespace hearth {

// The object that holds a key: the root, "system" in the root, "timer" in "system".
enum ConfigSection : uint8_t { kRoot, kSystem, kTimer, kSectionCount };

// The way a key's value takes into its setting.
enum class KeyUse : uint8_t {
  kPlain,               // it is stored
  kPrefixesUrlRewrite,  // it is put before the setting's text
  kMinutesToSeconds,    // it is stored; the setting, default or not, is then multiplied by 60
  kStartsLoginRecords   // it is no setting; it starts the login records or not
};

// A key and its setting: either `text` or `number` points to it. Both are null for the switch that
// starts the login records.
struct ConfigKey {
  constexpr ConfigKey(const char* keyName, std::string& setting, ConfigSection holder = kRoot,
                      KeyUse keyUse = KeyUse::kPlain)
      : name(keyName), text(&setting), section(holder), use(keyUse) {}
  constexpr ConfigKey(const char* keyName, int32_t& setting, ConfigSection holder = kRoot,
                      KeyUse keyUse = KeyUse::kPlain)
      : name(keyName), number(&setting), section(holder), use(keyUse) {}
  constexpr ConfigKey(const char* keyName, KeyUse keyUse)
      : name(keyName), section(kRoot), use(keyUse) {}

  const char* name;
  std::string* text = nullptr;
  int32_t* number = nullptr;
  ConfigSection section;
  KeyUse use;
};

inline constexpr ConfigKey kConfigKeys[] = {
    {"webserver_ports", BEConfig::WEBSERVER_PORTS},
    {"ipv4_allow_ports", BEConfig::IPV4_ALLOW_PORTS},
    {"ipv6_allow_ports", BEConfig::IPV6_ALLOW_PORTS},
    {"lan_allow_ports", BEConfig::LAN_ALLOW_PORTS},
    {"wan_allow_ports", BEConfig::WAN_ALLOW_PORTS},
    {"wlan_allow_ports", BEConfig::WLAN_ALLOW_PORTS},
    {"data_location", BEConfig::DATA_LOCATION},
    {"webserver_docroot", BEConfig::WEBSERVER_DOCROOT},
    {"url_rewrite_path", BEConfig::URL_REWRITE, kRoot, KeyUse::kPrefixesUrlRewrite},
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
    {"enable_bruteforce_prevent", KeyUse::kStartsLoginRecords},
    {"enable_cross_domain", BEConfig::ENABLE_CROSS_DOMAIN},
    {"enable_bypass_token", BEConfig::ENABLE_BYPASS_TOKEN},
    {"validation_on_request", BEConfig::VALIDATION_ON_REQUEST},
    {"cleanup_time", BEConfig::AUTH_CLEANUP, kSystem, KeyUse::kMinutesToSeconds},
    {"domain_name", BEConfig::AUTH_SECRET_STR, kSystem},
    {"session", BEConfig::AUTH_EXPIRATION, kTimer, KeyUse::kMinutesToSeconds},
};

}  // namespace hearth

#endif
