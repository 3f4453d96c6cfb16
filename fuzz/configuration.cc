// Any file as the configuration: the process ends exactly for a document that is no object, each
// kind of setting is taken or left as the file says, and a second reading changes nothing.
#include <csetjmp>
#include <cstdint>
#include <limits>
#include <optional>

#include "fuzz/fuzz.h"
#include "hearth/be_config.h"
#include "hearth/be_login_record.h"

namespace {

constexpr char kPorts[] = "8081,8082";

std::jmp_buf endOfInput;
bool isReading = false;

std::optional<int> statusOfExit(const char* path) {
  const int ended = setjmp(endOfInput);
  if (ended == 0) {
    isReading = true;
    BEConfig::init(path);
  }
  isReading = false;
  return ended == 0 ? std::nullopt : std::optional<int>(ended - 1);
}

void setDefaults() {
  BEConfig::isInit = false;
  BEConfig::WEBSERVER_PORTS = kPorts;
  BEConfig::URL_REWRITE = "url_rewrite.txt";
  BEConfig::LOG_MASK = 0x0fffffff;
  BEConfig::AUTH_CLEANUP = 60;
  BEConfig::AUTH_EXPIRATION = 1440;
  BELoginRecord::isRunning = false;
}

std::string textOr(json_object* object, const char* name, const char* otherwise) {
  json_object* const value = fuzz::memberOf(object, name);
  return json_object_is_type(value, json_type_string)
             ? std::string(json_object_get_string(value),
                           static_cast<std::size_t>(json_object_get_string_len(value)))
             : otherwise;
}

int64_t numberOr(json_object* object, const char* name, int64_t otherwise) {
  json_object* const value = fuzz::memberOf(object, name);
  const bool isNumber = json_object_is_type(value, json_type_int) != 0 ||
                        json_object_is_type(value, json_type_boolean) != 0;
  return isNumber ? json_object_get_int(value) : otherwise;
}

int64_t secondsOr(json_object* object, const char* name, int64_t otherwise) {
  using Limits = std::numeric_limits<int32_t>;
  const int64_t seconds = 60 * numberOr(object, name, otherwise);
  return std::min<int64_t>(std::max<int64_t>(seconds, Limits::min()), Limits::max());
}

// An absent file, or one that does not parse, is a null document: everything keeps its default.
void settingsAre(json_object* document) {
  json_object* const system = fuzz::memberOf(document, "system");
  json_object* const timer = fuzz::memberOf(system, "timer");
  fuzz::claim(BEConfig::WEBSERVER_PORTS == textOr(document, "webserver_ports", kPorts), "a text");
  fuzz::claim(BEConfig::URL_REWRITE == textOr(document, "url_rewrite_path", "") + "url_rewrite.txt",
              "the prefix of the rewrite file");
  fuzz::claim(BEConfig::LOG_MASK == numberOr(document, "log_mask", 0x0fffffff), "a number");
  fuzz::claim(
      BEConfig::AUTH_CLEANUP == (system != nullptr ? secondsOr(system, "cleanup_time", 60) : 60),
      "minutes in a section");
  fuzz::claim(
      BEConfig::AUTH_EXPIRATION == (timer != nullptr ? secondsOr(timer, "session", 1440) : 1440),
      "minutes in the inner section");
  fuzz::claim(BELoginRecord::isRunning ==
                  (document != nullptr && numberOr(document, "enable_bruteforce_prevent", 1) == 1),
              "the login records start when asked");
}

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" [[noreturn]] void __real_exit(int status);
extern "C" [[noreturn]] void __wrap_exit(int status) {
  if (isReading) {
    std::longjmp(endOfInput, status + 1);
  }
  __real_exit(status);
}
// NOLINTEND(bugprone-reserved-identifier)

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const fuzz::Folder folder;
  const std::string text(reinterpret_cast<const char*>(data), size);
  fuzz::Folder::write("in", text);
  // json-c's reader waits for more behind a number that ends with its file; the library does not.
  fuzz::Folder::write("with-line-end", text + "\n");
  const fuzz::JsonRef document(json_object_from_file("with-line-end"));
  setDefaults();
  const std::optional<int> ended = statusOfExit("in");
  const bool isObject = json_object_is_type(document.get(), json_type_object) != 0;
  fuzz::claim(ended.has_value() == (document != nullptr && !isObject),
              "the process ends when it must");
  fuzz::claim(ended.value_or(0) == 0, "the process ends with success");
  settingsAre(isObject ? document.get() : nullptr);
  fuzz::claim(BEConfig::isInit && !statusOfExit("in"), "the file is read once");
  settingsAre(isObject ? document.get() : nullptr);
  return 0;
}
