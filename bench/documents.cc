#include "bench/documents.h"

#include <cstdarg>
#include <cstdio>
#include <string>

#include "bench/bench.h"

namespace bench {
namespace {

__attribute__((format(printf, 1, 2))) std::string formatted(const char* format, ...) {
  char text[2048];
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  return text;
}

// The elements made for 0 to count - 1, as an array.
template <typename Make>
std::string arrayOf(int count, Make make) {
  std::string text = "[";
  for (int i = 0; i < count; ++i) {
    text += (i > 0 ? "," : "") + make(i);
  }
  return text + "]";
}

// As the library writes files.
std::string asFile(const std::string& text) {
  return json_object_to_json_string_ext(parsed(text).get(), JSON_C_TO_STRING_PRETTY);
}

std::string network(int radio, int i) {
  return formatted(
      R"({"ssid":"home-%d-%d","enabled":%s,"hidden":false,"isolation":false,"vlan":%d,)"
      R"("security":{"mode":"wpa2-psk","cipher":"aes","passphrase":"correct horse %d",)"
      R"("rekey":3600,"pmf":"optional"},"limits":{"clients":32,"down":0,"up":0}})",
      radio, i, i < 2 ? "true" : "false", 100 + i, radio * 10 + i);
}

std::string radio(int i) {
  return formatted(
             R"({"name":"radio%d","band":"%s","channel":%d,"width":%d,"power":%d.5,"country":"DE",)"
             R"("dfs":true,"beacon":100,"networks":)",
             i, i == 0 ? "2.4GHz" : "5GHz", i == 0 ? 6 : 36, i == 0 ? 20 : 80, 17 + i) +
         arrayOf(4, [=](int n) { return network(i, n); }) + "}";
}

std::string lease(int i) {
  return formatted(
      R"({"mac":"02:00:5e:10:00:%02x","address":"192.168.1.%d","name":"device-%d","expires":%d})",
      i, 100 + i, i, 1700000000 + i * 60);
}

std::string rule(int i) {
  return formatted(
      R"({"id":%d,"name":"rule-%d","enabled":%s,"protocol":"%s","source":"10.%d.%d.0/24",)"
      R"("port":%d,"target":"%s"})",
      i, i, i % 3 != 0 ? "true" : "false", i % 2 == 0 ? "tcp" : "udp", i / 256 % 256, i % 256,
      1024 + i % 60000, i % 5 == 0 ? "drop" : "accept");
}

// --- The schema ----------------------------------------------------------------------------------

std::string described(json_object* value, const std::string& name);

std::string describedObject(json_object* object, const std::string& more) {
  std::string properties;
  std::string required;
  json_object_object_foreach(object, name, member) {
    const char* const comma = properties.empty() ? "" : ",";
    properties += formatted(R"(%s"%s":)", comma, name) + described(member, name);
    required += formatted(R"(%s"%s")", comma, name);
  }
  return R"({"type":"object","additionalProperties":false,"required":[)" + required +
         R"(],"properties":{)" + properties + more + "}}";
}

std::string described(json_object* value, const std::string& name) {
  const std::string about = R"("description":"The )" + name + R"( as the gateway keeps it.")";
  switch (json_object_get_type(value)) {
    case json_type_object:
      return describedObject(value, "");
    case json_type_array:
      return R"({"type":"array","maxItems":5000,"items":)" +
             described(json_object_array_get_idx(value, 0), name) + "}";
    case json_type_int:
      return R"({"type":"integer","minimum":0,"maximum":4294967295,)" + about + "}";
    case json_type_double:
      return R"({"type":"number","minimum":0,"maximum":1000,)" + about + "}";
    case json_type_boolean:
      return R"({"type":"boolean",)" + about + "}";
    case json_type_string:
      return R"({"type":"string","minLength":1,"maxLength":255,)" + about + "}";
    default:
      return R"({"type":"null"})";
  }
}

std::string absentArea(int i) {
  const Json sample = parsed(network(0, 0));
  return formatted(R"(,"area_%d":)", i) + described(sample.get(), "area");
}

}  // namespace

std::string gatewayText() {
  return asFile(R"({"system":{"hostname":"gateway","domain":"home.example","timezone":"UTC",)"
                R"("uptime":86400,"ntp":["0.pool.example","1.pool.example"],"led":true},)"
                R"("wifi":{"enabled":true,"country":"DE","radios":)" +
                arrayOf(2, radio) +
                R"(},"network":{"lan":{"address":"192.168.1.1","mask":"255.255.255.0",)"
                R"("dhcp":{"enabled":true,"start":100,"end":200,"lease":86400,"leases":)" +
                arrayOf(48, lease) +
                R"(}},"wan":{"protocol":"dhcp","mtu":1500,"dns":["192.0.2.1","192.0.2.2"]}},)"
                R"("firewall":{"enabled":true,"rules":)" +
                arrayOf(40, rule) + "}}");
}

std::string firewallText(int rules) {
  return asFile(R"({"firewall":{"enabled":true,"policy":"drop","rules":)" + arrayOf(rules, rule) +
                "}}");
}

std::string gatewaySchemaText() {
  std::string absent;
  constexpr int kAbsentAreas = 71;
  for (int i = 0; i < kAbsentAreas; ++i) {
    absent += absentArea(i);
  }
  return describedObject(parsed(gatewayText()).get(), absent);
}

std::string loginRecordsText(int records) {
  return asFile(arrayOf(records, [](int i) {
    return formatted(R"({"ipAddress":"%s","attempts":%d,"lastAttempt":"1700000000"})",
                     loginAddress(i).c_str(), i % 4);
  }));
}

std::string loginAddress(int record) {
  return formatted("10.0.%d.%d", record / 256, record % 256);
}

}  // namespace bench
