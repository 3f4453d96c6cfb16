// What one request does with an area: read, check a message, change, save or keep, and be told no.
#include <filesystem>
#include <list>
#include <utility>

#include "backend.h"
#include "chapters.h"

namespace {

// A value as it stands in an area's file, whatever is in memory.
int numberOnDisk(API_TYPE_T area, const char* path) {
  const Handle file(JsonData::createObjectFromFile(LocalDbCtrl::getFileName(area)));
  return file == nullptr ? 0 : file->get<int>(path);
}

// A message without a schema passes in hearth; here there must be one.
bool conforms(API_TYPE_T area, const char* label, TreeMapObject* message) {
  const unsigned int row = messageRow(area, label);
  const char* schema = LocalDbCtrl::getSchemaFile(area, row);
  return schema != nullptr && std::filesystem::exists(schema) &&
         LocalDbCtrl::validateObject(message, area, row) == 0;
}

std::string textOf(const Handle& handle) {
  return json_object_to_json_string(handle->jobj);
}

// The area's sample message of this label, as if a client had sent it. Null, with a check not met,
// when it is not there or does not conform to its schema.
Handle receive(Story& story, API_TYPE_T area, const char* label) {
  Handle message =
      std::make_unique<TreeMapObject>(static_cast<unsigned int>(area), messageRow(area, label));
  story.tell(std::string(label) + ": " + textOf(message));
  int id = 0;
  const bool isGood = message->error == 0 && message->get_ex<int>("messageId", id) &&
                      conforms(area, label, message.get());
  story.check(isGood, "it conforms to its schema");
  return isGood ? std::move(message) : nullptr;
}

// Blocks one more hardware address on a network, and lets the first blocked one in again.
bool exchangeBlocked(const AreaLock& radio, const char* mac, const char* name) {
  const Handle rules(radio->get("networks.[0].accessControl.rules"));
  if (rules == nullptr) {
    return false;
  }
  TreeMapObject rule(false);
  rule.set("mac", mac);
  rule.set("name", name);
  return rules->addArrayItem(&rule) >= 0 && rules->delArrayItem(0) >= 0;
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

void spoil(TreeMapObject* message, const Flaw& flaw) {
  if (flaw.value == nullptr) {
    message->del(flaw.path);
    return;
  }
  const Handle value(JsonData::createObject(flaw.value));
  message->set(flaw.path, value.get());
}

}  // namespace

void readRadio(Story& story) {
  story.chapter("A request reads");
  story.tell("It locks radios.[0] of the wifi area and looks around.");
  AreaLock radio(API_WIFI, "radios.[0]", kDefaultSession);
  if (!story.check(static_cast<bool>(radio), "the area is ours")) {
    return;
  }
  story.check(radio->get<int>("channel") == 6,
              "the radio on " + quoted(radio->get<const char*>("band")) + " sends on channel 6");
  const Handle networks(radio->get("networks"));
  story.check(networks != nullptr && networks->len() == 3, "it carries 3 networks:");
  for (unsigned int i = 0; networks != nullptr && i < 3; ++i) {
    const Handle network(networks->at(i));
    story.tell("  " + quoted(network == nullptr ? nullptr : network->get<const char*>("ssid")));
  }
  std::list<TreeMapObject*> found = radio->find("mac", "02:00:5E:10:00:29");
  story.check(found.size() == 2, "02:00:5E:10:00:29 is found twice: a client and an access rule");
  for (TreeMapObject* object : found) {
    delete object;
  }
  story.check(radio.unlock(), "the area is free again");
}

void changeRadio(Story& story) {
  story.chapter("A request changes a radio and its access list, and saves");
  const Handle message = receive(story, API_WIFI, "WIFI_RADIO_CHANGE_REQ");
  if (message == nullptr) {
    return;
  }
  AreaLock radio(API_WIFI, "radios.[0]", kDefaultSession);
  if (!story.check(static_cast<bool>(radio), "radios.[0] of the wifi area is ours")) {
    return;
  }
  radio->set("channel", message->get<int>("data.channel"));
  radio->set("txPower", message->get<int>("data.txPower"));
  radio->set("channelsAllowed.[99]", 14);  // past the end: appended
  radio->del("channelsAllowed.[13]");      // and removed again
  story.check(exchangeBlocked(radio, "02:00:5E:10:00:70", "loud neighbour"),
              "one hardware address joins the deny list, the oldest leaves it");
  story.check(radio.save(), "the area is saved");
  story.check(numberOnDisk(API_WIFI, "radios.[0].channel") == 11, "the file says channel 11");
  story.check(numberOnDisk(API_WIFI, "radios.[0].txPower") == 60, "and power 60");
  story.showFile(LocalDbCtrl::getFileName(API_WIFI), "\"accessControl\"", 17);
}

void addPortForward(Story& story) {
  story.chapter("A request adds a rule and answers with a response");
  const Handle message = receive(story, API_SERVICE, "SERVICE_PORTFORWARDING_CREATE_REQ");
  const Handle rule(message == nullptr ? nullptr : message->clone("data"));
  AreaLock rules(API_SERVICE, "portForwarding.rules", kDefaultSession);
  if (!story.check(rule != nullptr && rules, "portForwarding.rules of the service area is ours")) {
    return;
  }
  const int id = rules->len() + 1;
  rule->set("id", id);
  story.check(rules->addArrayItem(rule.get()) == id - 1,
              "rule " + std::to_string(id) + " stands at the end");
  story.check(rules.save(), "the area is saved");
  const std::string path = "portForwarding.rules.[" + std::to_string(id - 1) + "].id";
  story.check(numberOnDisk(API_SERVICE, path.c_str()) == id, "the file has it");

  const char* const kResponse = "SERVICE_PORTFORWARDING_CREATE_RESP";
  TreeMapObject response(R"({"status": {"code": 0, "text": "ok"}})");
  response.set("messageId", message->get<int>("messageId"));
  response.set("data.id", id);
  response.set("data.rules", id);
  story.tell(std::string(kResponse) + ": " + json_object_to_json_string(response.jobj));
  story.check(conforms(API_SERVICE, kResponse, &response), "the response conforms to its schema");
}

void refuseMessages(Story& story) {
  story.chapter("Messages that a schema refuses");
  const char* const kRequest = "WIFI_SSID_UPDATE_REQ";
  const Handle sample = receive(story, API_WIFI, kRequest);
  if (sample == nullptr) {
    return;
  }
  story.tell("With one thing wrong at a time it is refused, before anything is locked:");
  for (const Flaw& flaw : kFlaws) {
    const Handle message(sample->clone(""));
    spoil(message.get(), flaw);
    story.check(!conforms(API_WIFI, kRequest, message.get()), std::string("refused: ") + flaw.what);
  }
}

void keepInMemory(Story& story) {
  story.chapter("An unlock keeps changes in memory");
  story.tell("A request dims the power light and unlocks without saving.");
  const char* const kBrightness = "leds.[0].brightness";
  const std::string before = contentOf(LocalDbCtrl::getFileName(API_GATEWAY));
  {
    AreaLock gateway(API_GATEWAY, "", kDefaultSession);
    if (!story.check(static_cast<bool>(gateway), "the gateway area is ours")) {
      return;
    }
    gateway->set(kBrightness, 15);
    story.check(gateway.unlock(), "the brightness is 15, and the area unlocked");
  }
  story.check(contentOf(LocalDbCtrl::getFileName(API_GATEWAY)) == before, "the file is untouched");
  AreaLock next(API_GATEWAY, "", kDefaultSession);
  if (!story.check(next && next->get<int>(kBrightness) == 15, "the next request sees 15")) {
    return;
  }
  story.check(next.save(), "and saves");
  story.check(numberOnDisk(API_GATEWAY, kBrightness) == 15, "now the file says 15 too");
}

void askForWhatIsNotThere(Story& story) {
  story.chapter("Asking for what is not there");
  {
    AreaLock missing(API_QOS, "rules.[99].name", kDefaultSession);
    story.check(!missing, "a path that leads nowhere gives no lock");
  }
  AreaLock qos(API_QOS, "", kDefaultSession);
  if (!story.check(static_cast<bool>(qos), "and leaves the area free for the next request")) {
    return;
  }
  int limit = -1;
  story.check(qos->get<int>("wan.limit") == 0, "a plain read of a missing number answers 0");
  story.check(!qos->get_ex<int>("wan.limit", limit) && limit == -1,
              "a checked read answers false and leaves the variable alone");
  story.check(qos->get<const char*>("rules.[0].title") == nullptr, "a missing text is null");
  story.check(Handle(qos->get("rules.[5]")) == nullptr, "there is no sixth rule");
  story.check(qos.unlock(), "the area is unlocked");
  story.check(LocalDbCtrl::unlockDbObject(API_QOS, kDefaultSession) == 2,
              "unlocking twice is refused");
  story.check(LocalDbCtrl::lockDbObject(99, "", kDefaultSession) == nullptr, "there is no area 99");
  story.tell("The log says: " + lastLineOf(BEConfig::LOG_FILE.c_str()));
  const TreeMapObject message(static_cast<unsigned int>(API_MISC), 0U);
  story.check(message.error == 1, "the misc area has no messages");
}
