// Formats of host names and of mail addresses.
//
// A host name is cut into labels at its dots. A label in ASCII is simple to check, unless it begins
// with "xn--": then it is the encoding of an international one, is decoded, and must be what
// encoding gives back. An international label is checked as RFC 5892 and 5893 say, as far as
// PCRE2's tables of characters go: which characters may stand in it, next to which, and that its
// direction is clear. The direction matters only for a name in which some label runs from right to
// left, so that is decided when all labels are known. Patterns of our own ask these questions.
#include <string>

#include "base/utf8.h"
#include "schema/format/format.h"
#include "schema/format/punycode.h"
#include "schema/format/reader.h"

namespace hearth::schema {
namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::size_t kLongestLabel = 63, kLongestName = 253;

// A whole label: letters (small ones, where there are two), marks and digits that no compatibility
// form replaces, and the exceptions by name. It does not begin with a mark.
constexpr char kLabel[] =
    R"(^(?!\p{M})(?:(?![\x{640}\x{7fa}\x{1100}-\x{11ff}\x{302e}\x{302f}\x{3031}-\x{3035}\x{303b})"
    R"(\x{a960}-\x{a97f}\x{d7b0}-\x{d7ff}\x{f900}-\x{fdff}\x{fe70}-\x{feff}\x{ff00}-\x{ffef})"
    R"(\x{1d400}-\x{1d7ff}]|(?![\x{df}\x{3c2}])\p{CWCF}|(?![\x{200c}\x{200d}])\p{DI}))"
    R"([-\p{Ll}\p{Lo}\p{Lm}\p{Mn}\p{Mc}\p{Nd}\x{b7}\x{375}\x{5f3}\x{5f4}\x{6fd}\x{6fe}\x{f0b})"
    R"(\x{200c}\x{200d}\x{3007}\x{30fb}])++\z)";

// Finds a character that is allowed only beside certain others, and is not: the middle dot between
// two l, the Greek numeral sign, Hebrew punctuation, the Katakana dot, two kinds of Arabic digits
// in one label, and the joiners.
constexpr char kMisplaced[] =
    R"((?<!l)\x{b7}|\x{b7}(?!l)|\x{375}(?!\p{sc:Greek})|(?<!\p{sc:Hebrew})[\x{5f3}\x{5f4}])"
    R"(|^(?!.*[\p{sc:Hiragana}\p{sc:Katakana}\p{sc:Han}]).*\x{30fb})"
    R"(|[\x{660}-\x{669}].*[\x{6f0}-\x{6f9}]|[\x{6f0}-\x{6f9}].*[\x{660}-\x{669}])"
    R"(|(?<!\p{GrLink})\x{200d})"
    R"(|(?<!\p{GrLink})(?:(?<![\p{sc:Arabic}\p{sc:Syriac}\p{sc:Nko}\p{sc:Mandaic}])\x{200c})"
    R"(|\x{200c}(?![\p{sc:Arabic}\p{sc:Syriac}\p{sc:Nko}\p{sc:Mandaic}])))";

// Finds a character that runs from right to left.
constexpr char kRightToLeft[] = R"([\p{bc:R}\p{bc:AL}\p{bc:AN}])";

// A label whose direction is clear beside right-to-left ones: it begins with a letter and holds
// only what goes with its direction.
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

// "xn--" in either case.
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

// Two dashes behind two characters are reserved for encodings.
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

// Checks one host name, label by label.
class NameChecker {
 public:
  NameChecker(bool international, Patterns& patterns)
      : international_(international), patterns_(patterns) {}

  bool isName(std::string_view name) {
    if (name.size() > 4 * kLongestName) {
      return false;
    }
    // Ends at the last label. Empty ones, also before or behind all others, are no labels.
    for (;;) {
      std::size_t separator = 0;
      const std::size_t end = findSeparator(name, separator);
      if (!isLabel(name.substr(0, end))) {
        return false;
      }
      if (end == kNone) {
        return size_ - 1 <= kLongestName && (!isRightToLeft_ || isAllClear_);
      }
      name.remove_prefix(end + separator);
    }
  }

 private:
  // Finds the end of the first label, and how many bytes separate it from the next. International
  // names may also have one of three wide dots between their labels.
  std::size_t findSeparator(std::string_view name, std::size_t& size) const {
    size = 1;
    std::size_t end = name.find('.');
    for (const char* dot : {"\u3002", "\uff0e", "\uff61"}) {
      const std::size_t at = international_ ? name.find(dot) : kNone;
      if (at < end) {
        end = at;
        size = 3;
      }
    }
    return end;
  }

  // One label of the name, in either form. Adds to its size, and to what is known of its direction.
  bool isLabel(std::string_view label) {
    if (label.size() > 4 * kLongestLabel) {
      return false;
    }
    if (!isAscii(label)) {
      std::string encoded;
      return international_ && !label.empty() && encodePunycode(label, encoded) &&
             encoded.size() + 4 <= kLongestLabel && isInternational(label, encoded.size() + 4);
    }
    if (!isPlainLabel(label)) {
      return false;
    }
    if (isPunycoded(label)) {
      return isEncoded(label);
    }
    size_ += label.size() + 1;
    isAllClear_ = isAllClear_ && !isDigit(label[0]);
    return !international_ || !hasReservedDashes(label);
  }

  // True for the one encoding that a label has, if the label needs one and is good itself.
  bool isEncoded(std::string_view label) {
    const std::string encoded = lowered(label.substr(4));
    std::string decoded;
    std::string again;
    return decodePunycode(encoded, decoded) && !isAscii(decoded) &&
           encodePunycode(decoded, again) && again == encoded &&
           isInternational(decoded, label.size());
  }

  // Requires a label in UTF-8; encodedSize is what it takes with "xn--" before it.
  bool isInternational(std::string_view label, std::size_t encodedSize) {
    size_ += encodedSize + 1;
    if (label.front() == '-' || label.back() == '-' || hasReservedDashes(label) ||
        !patterns_.matchesOwn(kLabel, label) || isMisplaced(label)) {
      return false;
    }
    isRightToLeft_ = isRightToLeft_ || patterns_.matchesOwn(kRightToLeft, label);
    isAllClear_ = isAllClear_ && patterns_.matchesOwn(kOneDirection, label);
    return true;
  }

  bool isMisplaced(std::string_view label) { return patterns_.matchesOwn(kMisplaced, label); }

  bool international_;
  Patterns& patterns_;
  std::size_t size_ = 0;  // of the labels so far, encoded, with a dot behind each
  bool isRightToLeft_ = false;
  bool isAllClear_ = true;
};

bool isAtomCharacter(char c, bool international) {
  return isLetter(c) || isDigit(c) || ((c & 0x80) && international) ||
         std::string_view("!#$%&'*+-/=?^_`{|}~").find(c) != kNone;
}

// Words with dots between them, or any text in quotes, in which '"' and '\\' have a '\\' before
// them.
bool isLocalPart(std::string_view text, bool international) {
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
    text = text.substr(1, text.size() - 2);
    for (std::size_t i = 0; i < text.size(); ++i) {
      const bool isEscaped = text[i] == '\\';
      i += isEscaped;
      if (i >= text.size() || static_cast<unsigned char>(text[i]) < ' ' || text[i] == '\x7f' ||
          (text[i] == '"' && !isEscaped) || ((text[i] & 0x80) && !international)) {
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

// The inside of brackets that stand for a domain: an address.
bool isDomainLiteral(std::string_view text) {
  constexpr std::string_view kIpv6 = "IPv6:";
  return text.substr(0, kIpv6.size()) == kIpv6 ? isIpv6(text.substr(kIpv6.size())) : isIpv4(text);
}

}  // namespace

bool isHostname(std::string_view text, bool international, Patterns& patterns) {
  return NameChecker(international, patterns).isName(text);
}

// The last '@' ends the local part, since one may stand in quotes before it.
bool isEmail(std::string_view text, bool international, Patterns& patterns) {
  const std::size_t at = text.rfind('@');
  constexpr std::size_t kLongestLocal = 64;
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

}  // namespace hearth::schema
