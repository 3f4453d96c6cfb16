#include "examples/gatewayd/messages.h"

#include <json-c/json.h>

#include <cstdlib>
#include <sstream>

#include "schema/validate.h"

namespace {

// A kind of resource, and the messages by which other parts of the gateway know its changes.
struct Resource {
  API_TYPE_T area;
  const char* path;     // "*" stands for any segment
  const char* read;     // stem of the label of a read
  const char* changed;  // ... of a change
  const char* made;     // ... of a new one
  const char* firstId;  // name in the message of the first index in the path; none when empty
  const char* ownId;    // name in the message of the resource's own "id"; none when empty
  const char* part;     // the part of the resource that the message is about; "" for the whole
  const char* members;  // what of it goes into the message
};

// More specific ones first.
const Resource kResources[] = {
    {API_WIFI, "radios/*/networks/*", "WIFI_SSID_GET", "WIFI_SSID_UPDATE", "WIFI_SSID_CREATE",
     "radio", "network", "",
     "ssid enabled hidden security.mode security.passphrase security.protectedFrames accessControl "
     "maxClients"},
    {API_WIFI, "radios/*", "WIFI_RADIO_GET", "WIFI_RADIO_CHANGE", "WIFI_RADIO_CHANGE", "radio", "",
     "", "band channel channelAuto bandwidth txPower"},
    {API_NETWORK, "lans/*", "NETWORK_LAN_GET", "NETWORK_LAN_UPDATE", "NETWORK_LAN_UPDATE", "lan",
     "", "ipv4",
     "address mask dhcp.enabled dhcp.from dhcp.to dhcp.leaseSeconds dhcp.dns dhcp.domain "
     "dhcp.reserved"},
    {API_SERVICE, "portForwarding/rules/*", "SERVICE_PORTFORWARDING_LIST",
     "SERVICE_PORTFORWARDING_UPDATE", "SERVICE_PORTFORWARDING_CREATE", "", "", "",
     "name enabled protocol external internal"},
    {API_MEDIASHARE, "samba", "MEDIASHARE_SAMBA_GET", "MEDIASHARE_SAMBA_UPDATE",
     "MEDIASHARE_SAMBA_UPDATE", "", "", "",
     "enabled workgroup serverName comment protocols guestAccess"},
    {API_QOS, "rules/*", "QOS_CONFIGURATION_LIST", "QOS_RULES_CHANGE", "QOS_RULES_CREATE", "", "",
     "", "name enabled class match"},
};

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) {
    parts.push_back(part);
  }
  return parts;
}

// A resource as a request names it.
struct Match {
  const Resource* resource = nullptr;  // null: no row of the table
  std::string path;                    // where it stands in the database
  int firstIndex = -1;                 // the first index in the path
  bool isWhole = false;                // the request is about the resource, not a part of it
};

Match matchOf(const Resource& resource, const std::vector<std::string>& segments) {
  const std::vector<std::string> pattern = split(resource.path, '/');
  if (pattern.size() > segments.size()) {
    return {};
  }
  Match match;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool any = pattern[i] == "*";
    if (!any && pattern[i] != segments[i]) {
      return {};
    }
    match.path += (match.path.empty() ? "" : ".") + (any ? "[" + segments[i] + "]" : segments[i]);
    if (any && match.firstIndex < 0) {
      match.firstIndex = std::atoi(segments[i].c_str());
    }
  }
  match.resource = &resource;
  match.isWhole = pattern.size() == segments.size();
  return match;
}

Match findResource(API_TYPE_T area, const std::vector<std::string>& segments) {
  for (const Resource& resource : kResources) {
    Match match = resource.area == area ? matchOf(resource, segments) : Match();
    if (match.resource != nullptr) {
      return match;
    }
  }
  return {};
}

// The message that says what the resource now is.
Handle makeMessage(const Match& match, const TreeMapObject& now, unsigned int row,
                   const std::string& sessionKey) {
  const Resource& resource = *match.resource;
  Handle message(new TreeMapObject(false));
  message->set("messageId", static_cast<int>(row) + 1);
  message->set("session", sessionKey.c_str());
  if (resource.firstId[0] != '\0') {
    message->set((std::string("data.") + resource.firstId).c_str(), match.firstIndex);
  }
  if (resource.ownId[0] != '\0') {
    message->set((std::string("data.") + resource.ownId).c_str(), now.get<int>("id"));
  }
  const Handle part(now.get(resource.part));
  for (const std::string& member : split(resource.members, ' ')) {
    const Handle copy(part != nullptr ? part->clone(member.c_str()) : nullptr);
    if (copy != nullptr) {
      message->set(("data." + member).c_str(), copy.get());
    }
  }
  return message;
}

// Why a document does not conform to the schema in a file; empty when it does, or when there is no
// such file. hearth itself answers yes or no; the reason comes from its validator.
std::string violationOf(const TreeMapObject& document, const char* schemaFile,
                        const std::string& prefix) {
  const Handle schema(JsonData::createObjectFromFile(schemaFile));
  if (schema == nullptr) {
    return "";
  }
  hearth::schema::Violation violation;
  if (hearth::schema::validate(document.jobj, schema->jobj, &violation)) {
    return "";
  }
  return prefix + violation.instanceLocation + ": " + violation.message + " (rule " +
         violation.schemaLocation + ")";
}

// The schema of an area's whole database stands beside it: "wifi/wifi_SCHEMA.ldb".
std::string areaSchema(API_TYPE_T area) {
  std::string name = LocalDbCtrl::getFileName(area);
  return name.insert(name.rfind(".ldb"), "_SCHEMA");
}

}  // namespace

std::string stemOfRead(API_TYPE_T area, const std::vector<std::string>& segments) {
  const Match match = findResource(area, segments);
  return match.resource != nullptr ? match.resource->read : "";
}

std::string stemOfChange(API_TYPE_T area, const Change& change) {
  const Match match = findResource(area, change.segments);
  if (match.resource == nullptr || (match.isWhole && change.action == Action::kRemove)) {
    return "";
  }
  const bool isMade = match.isWhole && change.action == Action::kReplace;
  return isMade ? match.resource->made : match.resource->changed;
}

std::string findRefusal(API_TYPE_T area, const Change& change, const TreeMapObject& changed,
                        const std::string& sessionKey) {
  if (BEConfig::VALIDATION_ON_REQUEST == 0) {
    return "";
  }
  const std::string stem = stemOfChange(area, change);
  if (!stem.empty()) {
    const Match match = findResource(area, change.segments);
    const std::string label = stem + "_REQ";
    const unsigned int row = messageRow(area, label.c_str());
    const Handle now(changed.get(match.path.c_str()));
    const Handle message(now != nullptr ? makeMessage(match, *now, row, sessionKey) : nullptr);
    if (message != nullptr && LocalDbCtrl::validateObject(message.get(), area, row) != 0) {
      return violationOf(*message, LocalDbCtrl::getSchemaFile(area, row), label + " at ");
    }
  }
  return violationOf(changed, areaSchema(area).c_str(), "");
}

bool conforms(int32_t setting, TreeMapObject& document, API_TYPE_T area, const char* label) {
  return setting == 0 || LocalDbCtrl::validateObject(&document, area, messageRow(area, label)) == 0;
}
