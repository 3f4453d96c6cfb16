// The backend's settings: built-in defaults, overridden once from a JSON configuration file.
//
// The library itself reads the LOG_ settings and DATA_LOCATION; the rest is the backend's.
// docs/files.md lists the keys of the configuration file.
#ifndef HEARTH_BE_CONFIG_H
#define HEARTH_BE_CONFIG_H

#include <stdint.h>

#include <string>

#include "hearth/export.h"

// Threads: the settings are written while the library is loaded and by init, before other threads
// start; after that they are only read, without a lock.
class HEARTH_API BEConfig {
 public:
  BEConfig() = delete;

  // True from the moment that init has begun its work; never false again.
  static bool isInit;

  // Switches and numbers. A switch is off at 0 and on at any other value.
  static int32_t LOG_MASK;          // bit n: log group n is written
  static int32_t LOG_ERROR_ENABLE;  // severity switches, read at every line
  static int32_t LOG_DEBUG_ENABLE;
  static int32_t LOG_WARNING_ENABLE;
  static int32_t LOG_INFO_ENABLE;
  static int32_t LOG_TO_FILE;  // read by Logger::init when it creates the log file
  static int32_t REPO_TYPE;
  static int32_t AUTH_EXPIRATION;  // seconds if the file has "timer" in "system" (86400 without
                                   // a "session" there), else the default 1440
  static int32_t AUTH_CLEANUP;     // seconds if the file has "system" (3600 without a
                                   // "cleanup_time" there), else the default 60
  static int32_t WEBSERVER_PORT;
  static int32_t VALIDATION_ON_REQUEST;
  static int32_t VALIDATION_ON_RESPONSE;
  static int32_t ENABLE_CROSS_DOMAIN;
  static int32_t ENABLE_BYPASS_TOKEN;
  static int32_t ENABLE_CHECK_DUPLICATE;
  static int32_t ENABLE_HTTPS;
  static int32_t API_VERSION;
  static int32_t MULTIDB_MODE_ENABLE;
  static int32_t GUEST_NETWORK_ENABLE;

  // Texts. Relative paths are relative to the working directory; port lists are decimal numbers
  // joined by commas, stored as given. LOG_FILE and DATA_LOCATION stay valid to the end of the
  // process, for threads that outlive main and for the report of a crash; the others are destroyed
  // when the library is unloaded.
  static std::string LOG_FILE;       // read at every line
  static std::string DATA_LOCATION;  // first component of every database, message and schema file
  static std::string WEBSERVER_DOCROOT;
  static std::string URL_REWRITE;
  static std::string UPLOAD_STORAGE;
  static std::string DOWNLOAD_STORAGE;
  static std::string SSL_CERTIFICATION_FILE;
  static std::string DUPLICATE_LOGIN_ENABLE;
  static std::string WEBSERVER_PORTS;
  static std::string IPV4_ALLOW_PORTS;
  static std::string IPV6_ALLOW_PORTS;
  static std::string LAN_ALLOW_PORTS;
  static std::string WAN_ALLOW_PORTS;
  static std::string WLAN_ALLOW_PORTS;
  static std::string SYSTEM_SCRIPT_DIR;
  static std::string AUTH_SECRET_STR;

  // Overrides the settings from the JSON file at path, once per process, and starts the login
  // records: "enable_bruteforce_prevent" starts them with 1 and true, and also when it is missing
  // or of a wrong type (null, 1.0, "0"); false and every other integer leave them stopped. Messages
  // about missing and wrong keys go straight to standard output, since the logger is started later.
  // Failure: a file that is missing, unreadable or not JSON (a null path included) leaves every
  // default in force and starts nothing; a wrong key leaves its own default in force; a second call
  // only logs a warning. A file whose root is not an object ends the process with exit(0) after a
  // message.
  // Threads: call it once, on the start-up thread, before Logger::init.
  static void init(const char* path);

  // The seconds since the system was started (not the backend, nor a session), from the first
  // number of "/proc/uptime": rounded to six decimals, then cut to whole seconds, so 99.9999996
  // gives 100. Failure: 0 when it cannot be read; beyond 32 bits, the nearest number. Threads: any.
  static int32_t get_Session_Uptime();
};

#endif
