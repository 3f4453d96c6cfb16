// Each case configures a child process from a text; what the child prints, and which settings it
// then finds changed, is all that a configuration does.
#include <sys/stat.h>

#include <map>
#include <sstream>
#include <tuple>

#include "hearth/be_config.h"
#include "hearth/be_login_record.h"
#include "hearth/logger.h"
#include "tests/support/scratch.h"

namespace hearth {
namespace {

// clang-format off
#define HEARTH_TEXTS(X)                                                                      \
  X(LOG_FILE) X(DATA_LOCATION) X(WEBSERVER_DOCROOT) X(URL_REWRITE) X(UPLOAD_STORAGE)         \
  X(DOWNLOAD_STORAGE) X(SSL_CERTIFICATION_FILE) X(DUPLICATE_LOGIN_ENABLE) X(WEBSERVER_PORTS) \
  X(IPV4_ALLOW_PORTS) X(IPV6_ALLOW_PORTS) X(LAN_ALLOW_PORTS) X(WAN_ALLOW_PORTS)              \
  X(WLAN_ALLOW_PORTS) X(SYSTEM_SCRIPT_DIR) X(AUTH_SECRET_STR)
#define HEARTH_NUMBERS(X)                                                                    \
  X(LOG_MASK) X(LOG_ERROR_ENABLE) X(LOG_DEBUG_ENABLE) X(LOG_WARNING_ENABLE)                  \
  X(LOG_INFO_ENABLE) X(LOG_TO_FILE) X(REPO_TYPE) X(AUTH_EXPIRATION) X(AUTH_CLEANUP)          \
  X(WEBSERVER_PORT) X(VALIDATION_ON_REQUEST) X(VALIDATION_ON_RESPONSE)                       \
  X(ENABLE_CROSS_DOMAIN) X(ENABLE_BYPASS_TOKEN) X(ENABLE_CHECK_DUPLICATE) X(ENABLE_HTTPS)    \
  X(API_VERSION) X(MULTIDB_MODE_ENABLE) X(GUEST_NETWORK_ENABLE)
// clang-format on

std::map<std::string, std::string> settings() {
  return {
#define HEARTH_TEXT(name) {#name, BEConfig::name},
#define HEARTH_NUMBER(name) {#name, std::to_string(BEConfig::name)},
      HEARTH_TEXTS(HEARTH_TEXT) HEARTH_NUMBERS(HEARTH_NUMBER)};
}

// The keys of the root in their order; texts have a capital T before them, numbers an N.
constexpr char kRootKeys[] =
    "Twebserver_ports Tipv4_allow_ports Tipv6_allow_ports Tlan_allow_ports Twan_allow_ports "
    "Twlan_allow_ports Tdata_location Twebserver_docroot Turl_rewrite_path Tdownload_storage "
    "Tupload_storage Tssl_certification_file Nenable_check_duplicate Tduplicate_login_enable "
    "Tlog_file Nenable_https Nrepo_type Napi_version Nenable_multidb_mode Nlog_to_file "
    "Nlog_debug_enable Nlog_warning_enable Nlog_info_enable Nlog_error_enable Nlog_mask "
    "Nvalidation_on_response Nenable_bruteforce_prevent Nenable_cross_domain Nenable_bypass_token "
    "Nvalidation_on_request";

std::vector<std::string> rootKeys() {
  std::istringstream keys(kRootKeys);
  return {std::istream_iterator<std::string>(keys), {}};
}

std::string complaint(const std::string& key) {
  return std::string("Configuration error, parameter MUST be ") +
         (key[0] == 'T' ? "string" : "integer or boolean") +
         "\nConfiguration is wrong, use default value for " + key.substr(1) + "\n";
}

// The complaints about a text that has no key of the root but those it spells out.
std::string complaintsAbout(const std::string& text) {
  std::string all;
  for (const std::string& key : rootKeys()) {
    if (text.find("\"" + key.substr(1) + "\"") == std::string::npos) {
      all += complaint(key);
    }
  }
  return all;
}

// The settings that differ from their defaults, "NAME=value " each; all of them without defaults.
std::string changes(const std::map<std::string, std::string>& before) {
  std::string all;
  for (const auto& [name, value] : settings()) {
    const auto earlier = before.find(name);
    if (earlier == before.end() || earlier->second != value) {
      all += name + "=" + value + " ";
    }
  }
  return all;
}

// Read while static objects are made, as those of a program would.
const std::string kSettingsAtLoad = changes({});

TEST(SettingsTest, HaveTheirDefaultsFromTheStart) {
  EXPECT_EQ(
      "API_VERSION=0 AUTH_CLEANUP=60 AUTH_EXPIRATION=1440 "
      "AUTH_SECRET_STR=urn:gateway:auth-secret:dflt1 DATA_LOCATION=./data "
      "DOWNLOAD_STORAGE=/tmp/be_download DUPLICATE_LOGIN_ENABLE= ENABLE_BYPASS_TOKEN=0 "
      "ENABLE_CHECK_DUPLICATE=0 ENABLE_CROSS_DOMAIN=0 ENABLE_HTTPS=0 GUEST_NETWORK_ENABLE=0 "
      "IPV4_ALLOW_PORTS=8081,8082 IPV6_ALLOW_PORTS=8081 LAN_ALLOW_PORTS=8081,8082 "
      "LOG_DEBUG_ENABLE=1 LOG_ERROR_ENABLE=1 LOG_FILE=./BE.log LOG_INFO_ENABLE=1 "
      "LOG_MASK=268435455 LOG_TO_FILE=1 LOG_WARNING_ENABLE=1 MULTIDB_MODE_ENABLE=0 REPO_TYPE=1 "
      "SSL_CERTIFICATION_FILE=./ssl_cert.pem SYSTEM_SCRIPT_DIR=scripts "
      "UPLOAD_STORAGE=/tmp/be_upload URL_REWRITE=url_rewrite.txt VALIDATION_ON_REQUEST=0 "
      "VALIDATION_ON_RESPONSE=0 WAN_ALLOW_PORTS=8081 WEBSERVER_DOCROOT=www WEBSERVER_PORT=8888 "
      "WEBSERVER_PORTS=8081,8082 WLAN_ALLOW_PORTS= ",
      kSettingsAtLoad);
}

class ConfigFileTest : public Scratch {
 protected:
  // Prints what init prints, then a bar, whether the login records run, and the changes.
  static Ended configure(const char* path) {
    return inChild([path] {
      const auto before = settings();
      BEConfig::init(path);
      printf("|%d %d %s", BEConfig::isInit ? 1 : 0, BELoginRecord::isRunning ? 1 : 0,
             changes(before).c_str());
    });
  }

  static void check(const std::string& text, const std::string& out) {
    putText("config", text);
    const Ended ended = configure("config");
    EXPECT_EQ(out, ended.out) << text;
    EXPECT_EQ(0, ended.status) << text;
  }
};

constexpr char kStarted[] = "init: new record file is created\n";

TEST_F(ConfigFileTest, EveryRootKeyReachesItsSetting) {
  std::string text;
  int number = 2;
  for (const std::string& key : rootKeys()) {
    const std::string value = std::to_string(number++);
    text += std::string(text.empty() ? "{" : ",") + "\"" + key.substr(1) +
            "\":" + (key[0] == 'T' ? "\"" + value + "\"" : value);
  }
  check(text + "}",
        "|1 0 API_VERSION=19 DATA_LOCATION=8 DOWNLOAD_STORAGE=11 DUPLICATE_LOGIN_ENABLE=15 "
        "ENABLE_BYPASS_TOKEN=30 ENABLE_CHECK_DUPLICATE=14 ENABLE_CROSS_DOMAIN=29 ENABLE_HTTPS=17 "
        "IPV4_ALLOW_PORTS=3 IPV6_ALLOW_PORTS=4 LAN_ALLOW_PORTS=5 LOG_DEBUG_ENABLE=22 "
        "LOG_ERROR_ENABLE=25 LOG_FILE=16 LOG_INFO_ENABLE=24 LOG_MASK=26 LOG_TO_FILE=21 "
        "LOG_WARNING_ENABLE=23 MULTIDB_MODE_ENABLE=20 REPO_TYPE=18 SSL_CERTIFICATION_FILE=13 "
        "UPLOAD_STORAGE=12 URL_REWRITE=10url_rewrite.txt VALIDATION_ON_REQUEST=31 "
        "VALIDATION_ON_RESPONSE=27 WAN_ALLOW_PORTS=6 WEBSERVER_DOCROOT=9 WEBSERVER_PORTS=2 "
        "WLAN_ALLOW_PORTS=7 ");
}

TEST_F(ConfigFileTest, ValuesAndSections) {
  const std::string none = complaintsAbout("");
  const std::string clean = complaint("Ncleanup_time");
  const std::string domain = complaint("Tdomain_name");
  const std::string session = complaint("Nsession");
  const std::pair<const char*, std::string> rows[] = {
      {"{}", none + kStarted + "|1 1 "},
      {R"({"LOG_FILE":"x","system":null})", none + kStarted + "|1 1 "},
      {R"({"system":{}})", none + clean + domain + kStarted + "|1 1 AUTH_CLEANUP=3600 "},
      {R"({"system":7})", none + clean + domain + kStarted + "|1 1 AUTH_CLEANUP=3600 "},
      {R"({"system":{"timer":null,"domain_name":"d"}})",
       none + clean + kStarted + "|1 1 AUTH_CLEANUP=3600 AUTH_SECRET_STR=d "},
      {R"({"system":{"timer":{}}})", none + clean + domain + session + kStarted +
                                         "|1 1 AUTH_CLEANUP=3600 AUTH_EXPIRATION=86400 "},
      {R"({"system":{"timer":{"session":30}}})",
       none + clean + domain + kStarted + "|1 1 AUTH_CLEANUP=3600 AUTH_EXPIRATION=1800 "},
      {R"({"system":{"cleanup_time":5,"domain_name":"","timer":{"session":"30"}}})",
       none + session + kStarted + "|1 1 AUTH_CLEANUP=300 AUTH_EXPIRATION=86400 AUTH_SECRET_STR= "},
      {R"({"system":{"cleanup_time":35791395,"domain_name":"d","timer":{"session":-35791395}}})",
       none + kStarted +
           "|1 1 AUTH_CLEANUP=2147483647 AUTH_EXPIRATION=-2147483648 AUTH_SECRET_STR=d "},
  };
  for (const auto& [text, out] : rows) {
    check(text, out);
  }
}

// One key of the root with a value, and what follows the complaints; wrong ones have no such end.
TEST_F(ConfigFileTest, WrongTypesKeepTheDefault) {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"Nlog_mask", "255", "|1 1 LOG_MASK=255 "},
      {"Nlog_mask", "99999999999", "|1 1 LOG_MASK=2147483647 "},
      {"Nlog_mask", "255.0", nullptr},
      {"Nlog_mask", "\"255\"", nullptr},
      {"Nlog_mask", "[255]", nullptr},
      {"Nlog_mask", "null", nullptr},
      {"Nlog_info_enable", "false", "|1 1 LOG_INFO_ENABLE=0 "},
      {"Nenable_https", "true", "|1 1 ENABLE_HTTPS=1 "},
      {"Tlog_file", "\"\"", "|1 1 LOG_FILE= "},
      {"Tlog_file", "5", nullptr},
      {"Turl_rewrite_path", "\"/opt/rw/\"", "|1 1 URL_REWRITE=/opt/rw/url_rewrite.txt "},
      {"Turl_rewrite_path", "{}", nullptr},
      {"Nenable_bruteforce_prevent", "true", "|1 1 "},
      {"Nenable_bruteforce_prevent", "1", "|1 1 "},
      {"Nenable_bruteforce_prevent", "false", "|1 0 "},
      {"Nenable_bruteforce_prevent", "0", "|1 0 "},
      {"Nenable_bruteforce_prevent", "2", "|1 0 "},
      {"Nenable_bruteforce_prevent", "\"0\"", nullptr},
  };
  for (const auto& [key, value, out] : rows) {
    const bool isRight = out != nullptr;
    const std::string text = std::string("{\"") + (key + 1) + "\":" + value + "}";
    const std::string rest = isRight ? out : "|1 1 ";
    check(text, complaintsAbout(isRight ? text : "") +
                    (rest.compare(0, 4, "|1 1") == 0 ? kStarted : "") + rest);
  }
}

TEST_F(ConfigFileTest, WithoutADocumentNothingHappens) {
  mkfifo("pipe", 0666);
  const char* const none = nullptr;
  for (const char* path : {"missing", ".", "pipe", "/dev/zero", none}) {
    EXPECT_EQ("|1 0 ", configure(path).out) << (path != none ? path : "no path");
  }
  for (const char* text : {"", "{", "null", "{\"log_mask\":1", "x"}) {
    check(text, "|1 0 ");
  }
  for (const char* text : {"[]", "7 ", "\"text\""}) {
    check(text, "Configuration file config has wrong format, exit...\n");
  }
}

TEST_F(ConfigFileTest, HappensOnce) {
  putText("a", R"({"log_mask":1,"log_to_file":0})");
  putText("b", R"({"log_mask":2})");
  const Ended ended = inChild([] {
    BEConfig::init("a");
    Logger::init();
    Logger::enableFileLog = 0;
    printf("|");
    std::thread([] { BEConfig::init("b"); }).join();
    printf("%d", BEConfig::LOG_MASK);
  });
  EXPECT_EQ("UTIL          | WARN: BEConfig::init: System configure is initialized already\n1",
            ended.out.substr(ended.out.find('|') + 1));
}

}  // namespace
}  // namespace hearth
