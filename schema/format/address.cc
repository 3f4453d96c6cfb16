// Formats of numbered things and of pointers: IP addresses (RFC 2673 and 4291), UUIDs (RFC 4122),
// and JSON pointers (RFC 6901) with the relative ones.
#include "schema/format/format.h"
#include "schema/format/reader.h"

namespace hearth::schema {
namespace {

// Reads 0 to 255, without zeros before it: some would read those as octal.
bool readOctet(Reader& in) {
  const std::string_view start = in.rest();
  const std::size_t digits = in.skipDigits();
  if (digits == 0 || digits > 3 || (digits > 1 && start[0] == '0')) {
    return false;
  }
  return Reader(start).readNumber(digits) <= 255;
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
    const std::size_t colon = text.find(':');
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

// Eight groups, or fewer with one "::" that stands for at least one group of zeros.
bool isIpv6(std::string_view text) {
  const std::size_t gap = text.find("::");
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
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
    if (dash ? text[i] != '-' : hexValue(text[i]) < 0) {
      return false;
    }
  }
  return true;
}

// Empty, or steps that begin with a '/'; a '~' is only for "~0" and "~1".
bool isJsonPointer(std::string_view text) {
  if (!text.empty() && text[0] != '/') {
    return false;
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '~' && (i + 1 == text.size() || (text[i + 1] != '0' && text[i + 1] != '1'))) {
      return false;
    }
  }
  return true;
}

// How many levels up, and then "#" for the name found there or a pointer down from there.
bool isRelativeJsonPointer(std::string_view text) {
  Reader in(text);
  const std::size_t digits = in.skipDigits();
  return digits > 0 && (text[0] != '0' || digits == 1) &&
         (in.rest() == "#" || isJsonPointer(in.rest()));
}

}  // namespace hearth::schema
