// Formats of host names and of mail addresses. An international label is checked as RFC 5892 and
// 5893 say, as far as PCRE2's tables of characters go: which characters may stand in it, next to
// which, and that its direction is clear.
#include <string>

#include "base/utf8.h"
#include "schema/format.h"
#include "schema/punycode.h"
#include "schema/reader.h"

namespace hearth {
namespace schema {
namespace {

constexpr size_t kNone = std::string_view::npos;
constexpr size_t kLongestLabel = 63, kLongestName = 253;

// Letters (small ones, where there are two), marks and digits that no compatibility form replaces,
// and the exceptions by name.
constexpr char kLabel[] =
    R"(^(?!\p{M})(?:(?![\x{640}\x{7fa}\x{1100}-\x{11ff}\x{302e}\x{302f}\x{3031}-\x{3035}\x{303b})"
    R"(\x{a960}-\x{a97f}\x{d7b0}-\x{d7ff}\x{f900}-\x{fdff}\x{fe70}-\x{feff}\x{ff00}-\x{ffef})"
    R"(\x{1d400}-\x{1d7ff}]|(?![\x{df}\x{3c2}])\p{CWCF}|(?![\x{200c}\x{200d}])\p{DI}))"
    R"([-\p{Ll}\p{Lo}\p{Lm}\p{Mn}\p{Mc}\p{Nd}\x{b7}\x{375}\x{5f3}\x{5f4}\x{6fd}\x{6fe}\x{f0b})"
    R"(\x{200c}\x{200d}\x{3007}\x{30fb}])++\z)";

// Characters next to which another one is missing.
constexpr char kMisplaced[] =
    R"((?<!l)\x{b7}|\x{b7}(?!l)|\x{375}(?!\p{sc:Greek})|(?<!\p{sc:Hebrew})[\x{5f3}\x{5f4}])"
    R"(|^(?!.*[\p{sc:Hiragana}\p{sc:Katakana}\p{sc:Han}]).*\x{30fb})"
    R"(|[\x{660}-\x{669}].*[\x{6f0}-\x{6f9}]|[\x{6f0}-\x{6f9}].*[\x{660}-\x{669}])"
    R"(|(?<!\p{GrLink})\x{200d})"
    R"(|(?<!\p{GrLink})(?:(?<![\p{sc:Arabic}\p{sc:Syriac}\p{sc:Nko}\p{sc:Mandaic}])\x{200c})"
    R"(|\x{200c}(?![\p{sc:Arabic}\p{sc:Syriac}\p{sc:Nko}\p{sc:Mandaic}])))";

constexpr char kRightToLeft[] = R"([\p{bc:R}\p{bc:AL}\p{bc:AN}])";

// Labels whose direction is clear in a name that has right-to-left ones.
constexpr char kOneDirection[] =
    R"(^(?:[\p{bc:R}\p{bc:AL}](?!.*\p{bc:EN}.*\p{bc:AN}|.*\p{bc:AN}.*\p{bc:EN}))"
    R"((?:[\p{bc:R}\p{bc:AL}\p{bc:AN}\p{bc:EN}\p{bc:ES}\p{bc:CS}\p{bc:ET}\p{bc:ON}\p{bc:BN})"
    R"(\p{bc:NSM}]*[\p{bc:R}\p{bc:AL}\p{bc:EN}\p{bc:AN}])?\p{bc:NSM}*)"
    R"(|\p{bc:L}(?:[\p{bc:L}\p{bc:EN}\p{bc:ES}\p{bc:CS}\p{bc:ET}\p{bc:ON}\p{bc:BN}\p{bc:NSM}]*)"
    R"([\p{bc:L}\p{bc:EN}])?\p{bc:NSM}*)\z)";

bool isAscii(std::string_view text) {
  for (const char c : text) {
    if (c & 0x80) {
      return false;
    }
  }
  return true;
}

bool isPunycoded(std::string_view label) {
  return label.size() >= 4 && (label[0] | 0x20) == 'x' && (label[1] | 0x20) == 'n' &&
         label[2] == '-' && label[3] == '-';
}

bool isPlainLabel(std::string_view label) {
  for (const char c : label) {
    if (!isLetter(c) && !isDigit(c) && c != '-') {
      return false;
    }
  }
  return !label.empty() && label.size() <= kLongestLabel && label.front() != '-' &&
         label.back() != '-';
}

bool hasReservedDashes(std::string_view label) {
  return label.size() >= 4 && label.substr(2, 2) == "--";
}

std::string lowered(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    c = static_cast<char>(isLetter(c) ? c | 0x20 : c);
  }
  return out;
}

class NameChecker {
 public:
  NameChecker(bool international, Patterns& patterns)
      : international_(international), patterns_(patterns) {}

  bool isName(std::string_view name) {
    if (name.size() > 4 * kLongestName) {
      return false;
    }
    for (;;) {
      size_t separator = 0;
      const size_t end = findSeparator(name, &separator);
      if (!isLabel(name.substr(0, end))) {
        return false;
      }
      if (end == kNone) {
        return size_ - 1 <= kLongestName && (!rightToLeft_ || allClear_);
      }
      name.remove_prefix(end + separator);
    }
  }

 private:
  // International names may also have one of three wide dots between their labels.
  size_t findSeparator(std::string_view name, size_t* size) const {
    *size = 1;
    size_t end = name.find('.');
    for (const char* dot : {"\u3002", "\uff0e", "\uff61"}) {
      const size_t at = international_ ? name.find(dot) : kNone;
      if (at < end) {
        end = at;
        *size = 3;
      }
    }
    return end;
  }

  bool isLabel(std::string_view label) {
    if (label.size() > 4 * kLongestLabel) {
      return false;
    }
    if (!isAscii(label)) {
      std::string encoded;
      return international_ && !label.empty() && encodePunycode(label, &encoded) &&
             encoded.size() + 4 <= kLongestLabel && isInternational(label, encoded.size() + 4);
    }
    if (!isPlainLabel(label)) {
      return false;
    }
    if (isPunycoded(label)) {
      return isEncoded(label);
    }
    size_ += label.size() + 1;
    allClear_ = allClear_ && !isDigit(label[0]);
    return !international_ || !hasReservedDashes(label);
  }

  // The one encoding of a label that needs it.
  bool isEncoded(std::string_view label) {
    std::string decoded;
    std::string again;
    return decodePunycode(label.substr(4), &decoded) && !isAscii(decoded) &&
           encodePunycode(decoded, &again) && again == lowered(label.substr(4)) &&
           isInternational(decoded, label.size());
  }

  bool isInternational(std::string_view label, size_t encodedSize) {
    size_ += encodedSize + 1;
    if (label.front() == '-' || label.back() == '-' || hasReservedDashes(label) ||
        !patterns_.matchesOwn(kLabel, label) || isMisplaced(label)) {
      return false;
    }
    rightToLeft_ = rightToLeft_ || patterns_.matchesOwn(kRightToLeft, label);
    allClear_ = allClear_ && patterns_.matchesOwn(kOneDirection, label);
    return true;
  }

  bool isMisplaced(std::string_view label) { return patterns_.matchesOwn(kMisplaced, label); }

  bool international_;
  Patterns& patterns_;
  size_t size_ = 0;
  bool rightToLeft_ = false;
  bool allClear_ = true;
};

bool isAtomCharacter(char c, bool international) {
  return isLetter(c) || isDigit(c) || ((c & 0x80) && international) ||
         std::string_view("!#$%&'*+-/=?^_`{|}~").find(c) != kNone;
}

// Words with dots between them, or anything in quotes.
bool isLocalPart(std::string_view text, bool international) {
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
    text = text.substr(1, text.size() - 2);
    for (size_t i = 0; i < text.size(); ++i) {
      i += text[i] == '\\';
      if (i >= text.size() || static_cast<unsigned char>(text[i]) < ' ' || text[i] == '\x7f' ||
          (text[i] == '"' && (i == 0 || text[i - 1] != '\\')) ||
          ((text[i] & 0x80) && !international)) {
        return false;
      }
    }
    return true;
  }
  bool afterDot = true;
  for (const char c : text) {
    if (c == '.' ? afterDot : !isAtomCharacter(c, international)) {
      return false;
    }
    afterDot = c == '.';
  }
  return !afterDot;
}

bool isDomainLiteral(std::string_view text) {
  constexpr std::string_view kIpv6 = "IPv6:";
  return text.substr(0, kIpv6.size()) == kIpv6 ? isIpv6(text.substr(kIpv6.size())) : isIpv4(text);
}

}  // namespace

bool isHostname(std::string_view text, bool international, Patterns& patterns) {
  return NameChecker(international, patterns).isName(text);
}

bool isEmail(std::string_view text, bool international, Patterns& patterns) {
  const size_t at = text.rfind('@');
  constexpr size_t kLongestLocal = 64;
  const std::string_view local = text.substr(0, at);
  if (at > kLongestLocal || !isLocalPart(local, international) || !isUtf8(local)) {
    return false;
  }
  const std::string_view domain = text.substr(at + 1);
  if (domain.size() > 2 && domain.front() == '[' && domain.back() == ']') {
    return isDomainLiteral(domain.substr(1, domain.size() - 2));
  }
  return isHostname(domain, international, patterns);
}

}  // namespace schema
}  // namespace hearth
