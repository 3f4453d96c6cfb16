// The table of formats: a name and the question behind it. The questions differ in what they need
// to know, so three templates bring them to one signature.
#include "schema/format/format.h"

#include "schema/pattern/pattern.h"

namespace hearth::schema {
namespace {

using Check = bool (*)(std::string_view text, Patterns& patterns);

template <bool (*kCheck)(std::string_view)>
bool ofText(std::string_view text, Patterns&) {
  return kCheck(text);
}

template <bool (*kCheck)(std::string_view, bool), bool kInternational>
bool ofUri(std::string_view text, Patterns&) {
  return kCheck(text, kInternational);
}

template <bool (*kCheck)(std::string_view, bool, Patterns&), bool kInternational>
bool ofName(std::string_view text, Patterns& patterns) {
  return kCheck(text, kInternational, patterns);
}

// A pattern that would take too much work to match is a pattern all the same.
bool isRegex(std::string_view text, Patterns& patterns) {
  return patterns.isPattern(text);
}

struct Format {
  std::string_view name;
  Check check;
};

constexpr Format kFormats[] = {
    {"date-time", ofText<isDateTime>},
    {"date", ofText<isDate>},
    {"time", ofText<isTime>},
    {"duration", ofText<isDuration>},
    {"email", ofName<isEmail, false>},
    {"idn-email", ofName<isEmail, true>},
    {"hostname", ofName<isHostname, false>},
    {"idn-hostname", ofName<isHostname, true>},
    {"ipv4", ofText<isIpv4>},
    {"ipv6", ofText<isIpv6>},
    {"uri", ofUri<isUri, false>},
    {"uri-reference", ofUri<isUriReference, false>},
    {"iri", ofUri<isUri, true>},
    {"iri-reference", ofUri<isUriReference, true>},
    {"uri-template", ofText<isUriTemplate>},
    {"uuid", ofText<isUuid>},
    {"json-pointer", ofText<isJsonPointer>},
    {"relative-json-pointer", ofText<isRelativeJsonPointer>},
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

}  // namespace hearth::schema
