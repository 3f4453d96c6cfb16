// Formats of numbered things and of pointers: addresses, UUIDs, JSON pointers.
#include "schema/format/format.h"
#include "schema/format/reader.h"

namespace hearth {
namespace schema {
namespace {

bool readOctet(Reader& in) {
  const std::string_view start = in.rest();
  const size_t digits = in.skipDigits();
  if (digits == 0 || digits > 3 || (digits > 1 && start[0] == '0')) {
    return false;
  }
  return Reader(start).number(digits) <= 255;
}

// One group of an IPv6 address: up to four hexadecimal digits.
bool isGroup(std::string_view text) {
  for (const char c : text) {
    if (hexValue(c) < 0) {
      return false;
    }
  }
  return !text.empty() && text.size() <= 4;
}

// Counts the groups between colons, an IPv4 address at the very end as two; -1 when one is bad.
int countGroups(std::string_view text, bool atEnd) {
  int count = 0;
  while (!text.empty()) {
    const size_t colon = text.find(':');
    const std::string_view group = text.substr(0, colon);
    const bool last = colon == std::string_view::npos;
    if (last && atEnd && isIpv4(group)) {
      return count + 2;
    }
    if (!isGroup(group) || (!last && colon + 1 == text.size())) {
      return -1;
    }
    ++count;
    text.remove_prefix(last ? text.size() : colon + 1);
  }
  return count;
}

}  // namespace

bool isIpv4(std::string_view text) {
  Reader in(text);
  return readOctet(in) && in.skip('.') && readOctet(in) && in.skip('.') && readOctet(in) &&
         in.skip('.') && readOctet(in) && in.atEnd();
}

bool isIpv6(std::string_view text) {
  const size_t gap = text.find("::");
  if (gap == std::string_view::npos) {
    return countGroups(text, true) == 8;
  }
  const int before = countGroups(text.substr(0, gap), false);
  const int after = countGroups(text.substr(gap + 2), true);
  return before >= 0 && after >= 0 && before + after <= 7;
}

bool isUuid(std::string_view text) {
  if (text.size() != 36) {
    return false;
  }
  for (size_t i = 0; i < text.size(); ++i) {
    const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
    if (dash ? text[i] != '-' : hexValue(text[i]) < 0) {
      return false;
    }
  }
  return true;
}

bool isJsonPointer(std::string_view text) {
  if (!text.empty() && text[0] != '/') {
    return false;
  }
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '~' && (i + 1 == text.size() || (text[i + 1] != '0' && text[i + 1] != '1'))) {
      return false;
    }
  }
  return true;
}

bool isRelativeJsonPointer(std::string_view text) {
  Reader in(text);
  const size_t digits = in.skipDigits();
  return digits > 0 && (text[0] != '0' || digits == 1) &&
         (in.rest() == "#" || isJsonPointer(in.rest()));
}

}  // namespace schema
}  // namespace hearth
