// config and logins: the commands that explain a configuration file and the login records.
//
// config lets the library itself read the file, as a start of the backend would. The values are
// then in the library's settings; which of them the library found wrong shows only in the lines
// that it prints, so these are caught and searched. Where a value comes from, and which keys of the
// file the library does not know, is found by comparing the file with the library's table of keys.
//
// logins reads the file of the records and computes each wait with the library's own function.
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>

#include "base/json_ref.h"
#include "base/unique_fd.h"
#include "config/config_keys.h"
#include "hearth/be_login_record.h"
#include "hearth/json_data.h"
#include "login/login_wait.h"
#include "tools/command/command.h"
#include "tools/document/input.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/report.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct FileOptions {
  std::string file;
  bool json = false;
};

// In the order of ConfigSection: the path of the object that holds the keys.
constexpr const char* kSections[] = {"", "system", "system.timer"};

// The path of the key in the file.
std::string nameOf(const ConfigKey& key) {
  const std::string section = kSections[key.section];
  return section.empty() ? key.name : section + "." + key.name;
}

// Has the library read the file into its settings, as the backend's start does. The result is what
// it prints meanwhile, which says what it makes of each key: standard output is a file in memory
// for that time. No login records are started, because they count as running already.
std::string readAsTheBackendDoes(const std::string& file) {
  BELoginRecord::isRunning = true;
  const UniqueFd caught(memfd_create("hearth", MFD_CLOEXEC));
  const UniqueFd old(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0));
  if (!caught || !old) {
    throw Failure(Exit::kIo, std::string("cannot catch messages: ") + strerror(errno));
  }
  fflush(stdout);
  dup2(caught.get(), STDOUT_FILENO);
  BEConfig::init(file.c_str());
  fflush(stdout);
  dup2(old.get(), STDOUT_FILENO);
  std::string text(static_cast<std::size_t>(lseek(caught.get(), 0, SEEK_CUR)), '\0');
  const ssize_t got = pread(caught.get(), text.data(), text.size(), 0);
  text.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
  return text;
}

// Where the value of a key comes from, in words for the report.
struct Origin {
  std::string text;
  Ink ink = Ink::kPlain;
};

// A configuration file and what the library makes of it. The constructor throws a Failure for a
// file that cannot be explained: one that is no object, or that changes meanwhile.
class Configuration {
 public:
  explicit Configuration(const std::string& file);

  void addSettings(Report& report);
  void addUnknownKeys(Report& report);

  // False when a key is wrong or unknown. Known once both have been added.
  bool isRight() const { return isRight_; }

 private:
  json_object* section(ConfigSection section) const;
  bool isWrong(const ConfigKey& key) const;
  Origin originOf(const ConfigKey& key) const;
  Cell valueOf(const ConfigKey& key) const;

  const std::string text_;
  const Handle root_;
  std::string messages_;  // of the library, while it read the file
  bool isRight_ = true;
};

Configuration::Configuration(const std::string& file)
    : text_(readWhole(file)), root_(parse(text_, file)) {
  if (json_object_is_type(root_->jobj, json_type_object) == 0) {
    throw Failure(Exit::kNo, inQuotes(file) + ": is " + described(root_->jobj) +
                                 ", not an object: the backend would end at once, with status 0");
  }
  messages_ = readAsTheBackendDoes(file);
  if (readWhole(file) != text_) {
    throw Failure(Exit::kConflict, inQuotes(file) + ": changed while it was read; try again");
  }
}

// The object that may hold the keys of a section; null when it is missing.
json_object* Configuration::section(ConfigSection section) const {
  return JsonData::getJObj(root_->jobj, kSections[section]);
}

// True when the library has said that it goes on with the default.
bool Configuration::isWrong(const ConfigKey& key) const {
  return messages_.find(std::string("use default value for ") + key.name + "\n") !=
         std::string::npos;
}

// Minutes become seconds wherever the key's section is there, also when the key is missing or
// wrong: the library multiplies the default too.
Origin Configuration::originOf(const ConfigKey& key) const {
  const bool isPresent = json_object_object_get_ex(section(key.section), key.name, nullptr) != 0;
  const bool isScaled = key.use == KeyUse::kMinutesToSeconds && section(key.section) != nullptr;
  std::string text = "file";
  Ink ink = Ink::kGood;
  if (!isPresent) {
    text = "default";
    ink = Ink::kFaint;
  } else if (isWrong(key)) {
    text = key.use == KeyUse::kPrefixesUrlRewrite || key.text != nullptr
               ? "default: WRONG, must be a string"
               : "default: WRONG, must be an integer or a boolean";
    ink = Ink::kBad;
  }
  return {text + (isScaled ? ", minutes times 60" : ""), ink};
}

// The value that the library has in its settings now, be it from the file or the default.
Cell Configuration::valueOf(const ConfigKey& key) const {
  if (key.text != nullptr) {
    return *key.text;
  }
  if (key.number != nullptr) {
    return int64_t{*key.number};
  }
  // The key without a setting is the switch of the login records, which is on by default.
  json_object* const value = memberOf(root_->jobj, key.name);
  return int64_t{isWrong(key) || value == nullptr ? 1 : json_object_get_int(value)};
}

// All keys in the order of the library's table, then the settings that no key can change.
void Configuration::addSettings(Report& report) {
  for (const ConfigKey& key : kConfigKeys) {
    const Origin origin = originOf(key);
    isRight_ = isRight_ && origin.ink != Ink::kBad;
    report.add({nameOf(key), valueOf(key), Cell(origin.text, origin.ink)});
  }
  const auto addFixed = [&](const char* name, Cell value) {
    report.add({name, std::move(value), Cell("fixed: has no key", Ink::kFaint)});
  };
  addFixed("WEBSERVER_PORT", int64_t{BEConfig::WEBSERVER_PORT});
  addFixed("SYSTEM_SCRIPT_DIR", BEConfig::SYSTEM_SCRIPT_DIR);
  addFixed("GUEST_NETWORK_ENABLE", int64_t{BEConfig::GUEST_NETWORK_ENABLE});
}

// Looks through the three objects that may hold keys. Besides the keys, the names of the two inner
// objects are known.
void Configuration::addUnknownKeys(Report& report) {
  std::vector<std::string> known(std::begin(kSections) + 1, std::end(kSections));
  for (const ConfigKey& key : kConfigKeys) {
    known.push_back(nameOf(key));
  }
  for (const char* const section : kSections) {
    json_object* const object = JsonData::getJObj(root_->jobj, section);
    if (json_object_is_type(object, json_type_object) == 0) {
      continue;
    }
    json_object_object_foreach(object, member, value) {
      const std::string name = (*section == '\0' ? "" : std::string(section) + ".") + member;
      if (std::count(known.begin(), known.end(), name) == 0) {
        isRight_ = false;
        report.add({name, json_object_to_json_string_ext(value, JSON_C_TO_STRING_NOSLASHESCAPE),
                    Cell("UNKNOWN key, ignored" + didYouMean(name, known), Ink::kBad)});
      }
    }
  }
}

// The exit code tells scripts whether every key of the file is right and known.
void config(Context& context, const FileOptions& options) {
  Configuration configuration(options.file);
  Report report({"key", "value", "origin"});
  configuration.addSettings(report);
  configuration.addUnknownKeys(report);
  report.print(context.out, options.json);
  context.exit = configuration.isRight() ? Exit::kDone : Exit::kNo;
}

// Seconds since the epoch as a date and time in UTC; left as they are when no calendar reaches
// there.
std::string timeText(const char* seconds) {
  const std::string text = utcText(static_cast<time_t>(strtoull(seconds, nullptr, 10)));
  return text.empty() ? seconds : text;
}

// Adds a record that has an address; the library passes over others. `seen` are the addresses so
// far: of two records for one address only the first counts, so the second has no wait.
void addRecord(Report& report, json_object* record, std::vector<std::string>& seen) {
  json_object* const address = memberOf(record, "ipAddress");
  if (json_object_is_type(address, json_type_string) == 0) {
    return;
  }
  const std::string name = json_object_get_string(address);
  const int32_t attempts = json_object_get_int(memberOf(record, "attempts"));
  const char* const last = json_object_get_string(memberOf(record, "lastAttempt"));
  const uint32_t wait =
      last == nullptr ? penaltyMinutes(attempts) : waitMinutes(attempts, last, time(nullptr));
  const bool isFirst = std::count(seen.begin(), seen.end(), name) == 0;
  seen.push_back(name);
  const int64_t minutes = isFirst ? wait : 0;
  report.add({name, int64_t{attempts},
              minutes == 0 ? Cell(minutes) : Cell(std::to_string(minutes), Ink::kBad),
              last == nullptr ? Cell() : Cell(timeText(last))});
}

// Without any record people get no empty table; programs always get an array.
void logins(Context& context, const FileOptions& options) {
  const Handle records = readJson(options.file);
  if (json_object_is_type(records->jobj, json_type_array) == 0) {
    throw Failure(Exit::kNo, inQuotes(options.file) + ": is " + described(records->jobj) +
                                 ", not an array: the backend would stop counting logins");
  }
  Report report({"address", "attempts", "wait", "last"});
  std::vector<std::string> seen;
  const std::size_t length = json_object_array_length(records->jobj);
  for (std::size_t i = 0; i < length; ++i) {
    addRecord(report, json_object_array_get_idx(records->jobj, i), seen);
  }
  if (options.json || !report.isEmpty()) {
    report.print(context.out, options.json);
  }
}

}  // namespace

void addConfigurationCommands(CLI::App& app, Context& context) {
  const auto configuring = addCommand<FileOptions>(
      app, context, "config",
      "Show every setting that a configuration file gives, and where it comes from\n\n"
      "Wrong and unknown keys are marked, and make the exit code 1. Nothing is started.",
      "  hearth config /etc/gateway/gateway.conf\n"
      "  hearth config gateway.conf | grep -E 'WRONG|UNKNOWN'",
      config);
  configuring.app->add_option("FILE", configuring.options.file, "the configuration file")
      ->required();
  configuring.app->add_flag("--json", configuring.options.json, "print JSON");

  const auto listing = addCommand<FileOptions>(
      app, context, "logins",
      "List the addresses that have tried to log in, and the minutes each must still wait",
      "  hearth logins\n  hearth logins --file /run/gateway/.loginrecord.cfg", logins);
  listing.options.file = ".loginrecord.cfg";
  listing.app->add_option("--file", listing.options.file, "instead of ./.loginrecord.cfg")
      ->type_name("FILE");
  listing.app->add_flag("--json", listing.options.json, "print JSON");
}

}  // namespace hearth::tool
