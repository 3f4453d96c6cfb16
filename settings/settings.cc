// The settings and their built-in defaults. Numbers have theirs before any code runs, texts from
// the loading of the library on. The two texts that are used to the very end are never destroyed.
#include "base/undestroyed.h"
#include "hearth/be_config.h"

bool BEConfig::isInit = false;

int32_t BEConfig::LOG_MASK = 0x0fffffff;
int32_t BEConfig::LOG_ERROR_ENABLE = 1;
int32_t BEConfig::LOG_DEBUG_ENABLE = 1;
int32_t BEConfig::LOG_WARNING_ENABLE = 1;
int32_t BEConfig::LOG_INFO_ENABLE = 1;
int32_t BEConfig::LOG_TO_FILE = 1;
int32_t BEConfig::REPO_TYPE = 1;
int32_t BEConfig::AUTH_EXPIRATION = 1440;
int32_t BEConfig::AUTH_CLEANUP = 60;
int32_t BEConfig::WEBSERVER_PORT = 8888;
int32_t BEConfig::VALIDATION_ON_REQUEST = 0;
int32_t BEConfig::VALIDATION_ON_RESPONSE = 0;
int32_t BEConfig::ENABLE_CROSS_DOMAIN = 0;
int32_t BEConfig::ENABLE_BYPASS_TOKEN = 0;
int32_t BEConfig::ENABLE_CHECK_DUPLICATE = 0;
int32_t BEConfig::ENABLE_HTTPS = 0;
int32_t BEConfig::API_VERSION = 0;
int32_t BEConfig::MULTIDB_MODE_ENABLE = 0;
int32_t BEConfig::GUEST_NETWORK_ENABLE = 0;

namespace hearth {

// Threads that outlive main still log and look for files, and so does the report of a crash.
HEARTH_UNDESTROYED_MEMBER("8BEConfig8LOG_FILE", logFile, std::string)("./BE.log");
HEARTH_UNDESTROYED_MEMBER("8BEConfig13DATA_LOCATION", dataLocation, std::string)("./data");

}  // namespace hearth

std::string BEConfig::WEBSERVER_DOCROOT = "www";
std::string BEConfig::URL_REWRITE = "url_rewrite.txt";
std::string BEConfig::UPLOAD_STORAGE = "/tmp/be_upload";
std::string BEConfig::DOWNLOAD_STORAGE = "/tmp/be_download";
std::string BEConfig::SSL_CERTIFICATION_FILE = "./ssl_cert.pem";
std::string BEConfig::DUPLICATE_LOGIN_ENABLE;
std::string BEConfig::WEBSERVER_PORTS = "8081,8082";
std::string BEConfig::IPV4_ALLOW_PORTS = "8081,8082";
std::string BEConfig::IPV6_ALLOW_PORTS = "8081";
std::string BEConfig::LAN_ALLOW_PORTS = "8081,8082";
std::string BEConfig::WAN_ALLOW_PORTS = "8081";
std::string BEConfig::WLAN_ALLOW_PORTS;
std::string BEConfig::SYSTEM_SCRIPT_DIR = "scripts";
std::string BEConfig::AUTH_SECRET_STR = "urn:gateway:auth-secret:dflt1";
