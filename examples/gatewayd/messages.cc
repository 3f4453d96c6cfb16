#include "messages.h"

#include <cstdlib>
#include <sstream>

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
hearth::Value makeMessage(const Match& match, hearth::View now, unsigned int row,
                          const std::string& sessionKey) {
  const Resource& resource = *match.resource;
  hearth::Value message = hearth::newObject();
  const auto put = [&message](const std::string& path, const auto& value) {
    static_cast<void>(hearth::set(message, path, value));  // what is missing, the schema will say
  };
  put("messageId", row + 1);
  put("session", sessionKey);
  if (resource.firstId[0] != '\0') {
    put(std::string("data.") + resource.firstId, match.firstIndex);
  }
  if (resource.ownId[0] != '\0') {
    put(std::string("data.") + resource.ownId, hearth::getOr(now, "id", 0));
  }
  const hearth::View part = hearth::find(now, resource.part);
  for (const std::string& member : split(resource.members, ' ')) {
    if (const hearth::View value = hearth::find(part, member)) {
      put("data." + member, value);
    }
  }
  return message;
}

}  // namespace

std::string stemOfRead(API_TYPE_T area, const std::vector<std::string>& segments) {
  const Match match = findResource(area, segments);
  return match.resource != nullptr ? match.resource->read : "";
}

std::string stemOfChange(API_TYPE_T area, const Wanted& wanted) {
  const Match match = findResource(area, wanted.segments);
  if (match.resource == nullptr || (match.isWhole && wanted.action == Action::kRemove)) {
    return "";
  }
  const bool isMade = match.isWhole && wanted.action == Action::kReplace;
  return isMade ? match.resource->made : match.resource->changed;
}

hearth::Result<void> validateRequest(API_TYPE_T area, const Wanted& wanted, hearth::View changed,
                                     const std::string& sessionKey) {
  const std::string label = stemOfChange(area, wanted) + "_REQ";
  const std::optional<unsigned int> row = hearth::messageRow(area, label);
  const Match match = findResource(area, wanted.segments);
  const hearth::View now = hearth::find(changed, match.path);
  if (BEConfig::VALIDATION_ON_REQUEST == 0 || !row || !now) {
    return {};
  }
  const hearth::Value message = makeMessage(match, now, *row, sessionKey);
  hearth::Failure failure = hearth::validateMessage(message, area, *row).failure();
  if (failure.fault != hearth::Fault::kNone) {
    failure.sentence.insert(0, label + " at ");
  }
  return failure;
}
