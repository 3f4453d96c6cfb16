// What one request does with an area: read, check a message, change it or not, and be told no.
#include <hearth/kit.h>

#include <utility>

#include "chapters.h"

namespace {

// A number as it stands in an area's file, whatever is in memory.
int numberOnDisk(API_TYPE_T area, const std::string& path) {
  const hearth::Result<hearth::Value> file = hearth::parseFile(*hearth::databaseFile(area));
  return file ? hearth::getOr(*file, path, 0) : 0;
}

// A message without a schema passes in hearth; here there must be one.
hearth::Result<void> validated(API_TYPE_T area, const char* label, hearth::View message) {
  hearth::ValidateOptions options;
  options.isStrict = true;
  return hearth::validateMessage(message, area, label, options);
}

// The area's sample message of this label, as if a client had sent it. Nothing, with a check not
// met, when it is not there or does not conform to its schema.
hearth::Value receive(Story& story, API_TYPE_T area, const char* label) {
  const std::optional<unsigned int> row = hearth::messageRow(area, label);
  hearth::Result<hearth::Value> message =
      hearth::parseFile(row ? LocalDbCtrl::getFileName(area, *row) : nullptr);
  if (!message) {
    story.check(false, message.failure().sentence);
    return hearth::Value();
  }
  story.tell(std::string(label) + ": " + hearth::shown(*message));
  const hearth::Result<void> valid = validated(area, label, *message);
  story.check(valid && hearth::get<int>(*message, "messageId"), "it conforms to its schema");
  return valid ? std::move(*message) : hearth::Value();
}

// Blocks one more hardware address on a network, and lets the first blocked one in again.
bool exchangeBlocked(hearth::Change& radio, const char* mac, const char* name) {
  const std::string rules = "networks.[0].accessControl.rules";
  const std::string rule =
      rules + ".[" + std::to_string(hearth::elements(radio, rules).size()) + "]";
  radio.set(rule + ".mac", mac).set(rule + ".name", name);
  return radio.remove(rules + ".[0]");
}

// One message that a schema must refuse: the conforming sample with one thing wrong.
struct Flaw {
  const char* what;
  const char* path;
  const char* value;  // JSON text to put there; null removes what is there
};

const Flaw kFlaws[] = {
    {"a passphrase of seven characters", "data.security.passphrase", "\"seven77\""},
    {"no passphrase for an encrypted network", "data.security.passphrase", nullptr},
    {"a security mode that does not exist", "data.security.mode", "\"wep\""},
    {"a network name of 33 characters", "data.ssid", "\"012345678901234567890123456789012\""},
    {"a hardware address in small letters", "data.accessControl.rules.[0].mac",
     "\"02:00:5e:10:00:63\""},
    {"65 clients on one network", "data.maxClients", "65"},
    {"a text where a number belongs", "data.radio", "\"0\""},
    {"a member nobody knows", "data.colour", "\"green\""},
    {"no network named", "data.network", nullptr},
};

void spoil(hearth::Edit message, const Flaw& flaw) {
  if (flaw.value == nullptr) {
    hearth::remove(message, flaw.path);
  } else {
    static_cast<void>(hearth::set(message, flaw.path, std::move(*hearth::parse(flaw.value))));
  }
}

}  // namespace

void readRadio(Story& story) {
  story.chapter("A request reads");
  story.tell("It locks radios.[0] of the wifi area and looks around.");
  const hearth::Result<hearth::AreaLock> radio = hearth::AreaLock::take(API_WIFI, "radios.[0]");
  if (!story.check(static_cast<bool>(radio), "the area is ours")) {
    return;
  }
  story.check(
      hearth::getOr(*radio, "channel", 0) == 6,
      "the radio on " + quoted(hearth::getOr(*radio, "band", "").data()) + " sends on channel 6");
  story.check(hearth::elements(*radio, "networks").size() == 3, "it carries 3 networks:");
  for (const hearth::View network : hearth::elements(*radio, "networks")) {
    story.tell("  " + quoted(hearth::getOr(network, "ssid", "").data()));
  }
}

void changeRadio(Story& story) {
  story.chapter("A request changes a radio and its access list");
  const hearth::Value message = receive(story, API_WIFI, "WIFI_RADIO_CHANGE_REQ");
  hearth::Result<hearth::Change> radio = hearth::Change::begin(API_WIFI, "radios.[0]");
  if (!story.check(message && radio, "radios.[0] of the wifi area is ours")) {
    return;
  }
  radio->set("channel", hearth::find(message, "data.channel"))
      .set("txPower", hearth::find(message, "data.txPower"))
      .set("channelsAllowed.[99]", 14);   // past the end: appended
  radio->remove("channelsAllowed.[13]");  // and removed again
  story.check(exchangeBlocked(*radio, "02:00:5E:10:00:70", "loud neighbour"),
              "one hardware address joins the deny list, the oldest leaves it");
  story.check(numberOnDisk(API_WIFI, "radios.[0].channel") == 6, "the file still says channel 6");
  story.check(static_cast<bool>(radio->commit()), "the change conforms to the schema and is made");
  story.check(numberOnDisk(API_WIFI, "radios.[0].channel") == 11, "the file says channel 11");
  story.check(numberOnDisk(API_WIFI, "radios.[0].txPower") == 60, "and power 60");
  story.showFile(hearth::databaseFile(API_WIFI)->c_str(), "\"accessControl\"", 17);
}

void addPortForward(Story& story) {
  story.chapter("A request adds a rule and answers with a response");
  const hearth::Value message = receive(story, API_SERVICE, "SERVICE_PORTFORWARDING_CREATE_REQ");
  hearth::Result<hearth::Change> rules = hearth::Change::begin(API_SERVICE, "portForwarding.rules");
  if (!story.check(message && rules, "portForwarding.rules of the service area is ours")) {
    return;
  }
  const std::size_t count = hearth::elements(*rules).size();
  const std::string rule = "[" + std::to_string(count) + "]";
  const int id = static_cast<int>(count) + 1;
  rules->set(rule, hearth::find(message, "data")).set(rule + ".id", id);
  story.check(hearth::elements(*rules).size() == count + 1,
              "rule " + std::to_string(id) + " stands at the end");
  story.check(static_cast<bool>(rules->commit()), "the change is made");
  story.check(numberOnDisk(API_SERVICE, "portForwarding.rules." + rule + ".id") == id,
              "the file has it");

  const char* const kResponse = "SERVICE_PORTFORWARDING_CREATE_RESP";
  const hearth::Result<hearth::Value> response =
      hearth::parse(R"({"status": {"code": 0, "text": "ok"}})");
  const bool isMade = hearth::set(*response, "messageId", hearth::find(message, "messageId")) &&
                      hearth::set(*response, "data.id", id) &&
                      hearth::set(*response, "data.rules", id);
  story.tell(std::string(kResponse) + ": " + hearth::shown(*response));
  story.check(isMade && validated(API_SERVICE, kResponse, *response),
              "the response conforms to its schema");
}

void refuseMessages(Story& story) {
  story.chapter("Messages that a schema refuses");
  const char* const kRequest = "WIFI_SSID_UPDATE_REQ";
  const hearth::Value sample = receive(story, API_WIFI, kRequest);
  story.tell("With one thing wrong at a time it is refused, before anything is locked:");
  for (const Flaw& flaw : kFlaws) {
    const hearth::Result<hearth::Value> message = hearth::copy(sample);
    spoil(*message, flaw);
    const hearth::Failure failure = validated(API_WIFI, kRequest, *message).failure();
    story.check(failure.fault == hearth::Fault::kRefused,
                std::string(flaw.what) + ": " + failure.sentence);
  }
}

void changeNothing(Story& story) {
  story.chapter("A change that is not made leaves no trace");
  const std::string file = *hearth::databaseFile(API_WIFI);
  const std::string before = contentOf(file.c_str());
  {
    hearth::Result<hearth::Change> change = hearth::Change::begin(API_WIFI, "radios.[0]");
    if (!story.check(static_cast<bool>(change), "a request begins to change a radio")) {
      return;
    }
    change->set("channel", 999);
    const hearth::Failure failure = change->commit().failure();
    story.check(failure.fault == hearth::Fault::kRefused, "it is refused: " + failure.sentence);
  }
  {
    hearth::Result<hearth::Change> change = hearth::Change::begin(API_WIFI, "radios.[0]");
    story.check(change && !change->set("channel", 1).set("band.x", 1).commit(),
                "another one puts a member into a text, and is not made in part either");
  }
  story.check(contentOf(file.c_str()) == before, "the file is untouched");
  const hearth::Result<hearth::AreaLock> next = hearth::AreaLock::take(API_WIFI, "radios.[0]");
  story.check(next && hearth::getOr(*next, "channel", 0) == 11, "and so is what requests see");
}

void askForWhatIsNotThere(Story& story) {
  story.chapter("Asking for what is not there");
  for (const auto& [area, path] : {std::pair(6U, "rules.[99].name"), std::pair(99U, "")}) {
    const std::string sentence = hearth::AreaLock::take(area, path).failure().sentence;
    story.check(!sentence.empty(), "no lock: " + sentence);
  }
  const hearth::Result<hearth::AreaLock> qos = hearth::AreaLock::take(API_QOS, "");
  if (!story.check(static_cast<bool>(qos), "the area is free for the next request")) {
    return;
  }
  story.check(!hearth::get<int>(*qos, "wan.limit"), "a number that is missing reads as nothing");
  story.check(hearth::getOr(*qos, "wan.limit", -1) == -1, "or as a default");
  story.check(!hearth::get<int8_t>(*qos, "configuration.wan.upKbps"),
              "so does one that does not fit");
  story.check(!hearth::find(*qos, "rules.[5]"), "there is no sixth rule");
  story.check(!hearth::messageRow(API_MISC, "MISC_GET_REQ"), "the misc area has no messages");
}
