#include "schema/format/format.h"

#include "schema/pattern/pattern.h"

namespace hearth {
namespace schema {
namespace {

using Check = bool (*)(std::string_view text, Patterns& patterns);

template <bool (*check)(std::string_view)>
bool plain(std::string_view text, Patterns&) {
  return check(text);
}

template <bool (*check)(std::string_view, bool), bool international>
bool uri(std::string_view text, Patterns&) {
  return check(text, international);
}

template <bool (*check)(std::string_view, bool, Patterns&), bool international>
bool name(std::string_view text, Patterns& patterns) {
  return check(text, international, patterns);
}

bool isRegex(std::string_view text, Patterns& patterns) {
  return patterns.isPattern(text);
}

struct Format {
  std::string_view name;
  Check check;
};

constexpr Format kFormats[] = {
    {"date-time", plain<isDateTime>},
    {"date", plain<isDate>},
    {"time", plain<isTime>},
    {"duration", plain<isDuration>},
    {"email", name<isEmail, false>},
    {"idn-email", name<isEmail, true>},
    {"hostname", name<isHostname, false>},
    {"idn-hostname", name<isHostname, true>},
    {"ipv4", plain<isIpv4>},
    {"ipv6", plain<isIpv6>},
    {"uri", uri<isUri, false>},
    {"uri-reference", uri<isUriReference, false>},
    {"iri", uri<isUri, true>},
    {"iri-reference", uri<isUriReference, true>},
    {"uri-template", plain<isUriTemplate>},
    {"uuid", plain<isUuid>},
    {"json-pointer", plain<isJsonPointer>},
    {"relative-json-pointer", plain<isRelativeJsonPointer>},
    {"regex", isRegex},
};

}  // namespace

bool hasFormat(std::string_view text, std::string_view format, Workshop& workshop) {
  for (const Format& known : kFormats) {
    if (known.name == format) {
      return workshop.effort.spend(text.size() / 4) && known.check(text, workshop.patterns);
    }
  }
  return true;
}

}  // namespace schema
}  // namespace hearth
