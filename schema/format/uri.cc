// Formats of URIs (RFC 3986), IRIs (RFC 3987, which adds the characters beyond ASCII) and URI
// templates (RFC 6570).
//
// A URI is cut from its end: the fragment at the first '#', the query at the first '?', then the
// authority and the path. Each part is then a run of allowed characters, and the parts differ only
// in which special ones they allow beside the common ones; only the authority has more of a shape.
#include <cstring>

#include "base/utf8.h"
#include "schema/format/format.h"
#include "schema/format/reader.h"

namespace hearth::schema {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

// Cuts the text before the first of these characters, and gives what was cut off: empty when there
// is none of them.
std::string_view cutAt(const char* characters, std::string_view& text) {
  const std::size_t at = text.find_first_of(characters);
  const std::string_view rest = at == kNone ? std::string_view() : text.substr(at);
  text = text.substr(0, at);
  return rest;
}

class UriChecker {
 public:
  explicit UriChecker(bool international) : international_(international) {}

  // All that a URI and a relative reference have in common: everything but the scheme.
  bool isRest(std::string_view text) const {
    if (!isUtf8(text)) {
      return false;
    }
    std::string_view fragment = cutAt("#", text);
    std::string_view query = cutAt("?", text);
    if (!fragment.empty() && !isMadeOf(fragment.substr(1), ":@/?")) {
      return false;
    }
    if (!query.empty() && !isMadeOf(query.substr(1), ":@/?")) {
      return false;
    }
    if (text.substr(0, 2) == "//") {
      text.remove_prefix(2);
      const std::string_view path = cutAt("/", text);
      return isAuthority(text) && isMadeOf(path, ":@/");
    }
    return isMadeOf(text, ":@/");
  }

 private:
  // user@host:port, of which only the host must be there, and may be empty. The colons inside the
  // brackets of an address begin no port.
  bool isAuthority(std::string_view text) const {
    const std::size_t at = text.find('@');
    if (at != kNone) {
      if (!isMadeOf(text.substr(0, at), ":")) {
        return false;
      }
      text.remove_prefix(at + 1);
    }
    const std::size_t bracket = text.rfind(']');
    const std::size_t colon = text.find(':', bracket == kNone ? 0 : bracket);
    const std::string_view host = text.substr(0, colon);
    Reader port(colon == kNone ? std::string_view() : text.substr(colon + 1));
    port.skipDigits();
    return port.atEnd() && (host.substr(0, 1) == "[" ? isLiteral(host) : isMadeOf(host, ""));
  }

  // [IPv6] or [v1.anything].
  static bool isLiteral(std::string_view host) {
    if (host.size() < 2 || host.back() != ']') {
      return false;
    }
    host = host.substr(1, host.size() - 2);
    Reader in(host);
    if (!in.skipLetter('v')) {
      return isIpv6(host);
    }
    const std::size_t dot = in.rest().find('.');
    if (dot == kNone || dot == 0 || dot + 1 == in.rest().size()) {
      return false;
    }
    for (const char c : in.rest().substr(0, dot)) {
      if (hexValue(c) < 0) {
        return false;
      }
    }
    return UriChecker(false).isMadeOf(in.rest().substr(dot + 1), ":");
  }

  // True for a text of letters, digits, the signs that mean nothing special anywhere, these others,
  // and %XX.
  bool isMadeOf(std::string_view text, const char* others) const {
    for (std::size_t i = 0; i < text.size(); ++i) {
      const char c = text[i];
      if (c == '%') {
        if (i + 2 >= text.size() || hexValue(text[i + 1]) < 0 || hexValue(text[i + 2]) < 0) {
          return false;
        }
        continue;
      }
      const bool isBeyond = (c & 0x80) != 0 && international_;
      const bool isListed =
          c != '\0' && (strchr("-._~!$&'()*+,;=", c) != nullptr || strchr(others, c) != nullptr);
      if (!isBeyond && !isListed && !isLetter(c) && !isDigit(c)) {
        return false;
      }
    }
    return true;
  }

  bool international_;
};

// The length of the scheme with its colon; 0 when there is none.
std::size_t schemeSize(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && (isLetter(text[i]) || (i > 0 && (isDigit(text[i]) || text[i] == '+' ||
                                                             text[i] == '-' || text[i] == '.')))) {
    ++i;
  }
  return i > 0 && i < text.size() && text[i] == ':' ? i + 1 : 0;
}

bool skipPercentCode(Reader& in) {
  return in.skip('%') && hexValue(in.peek()) >= 0 && in.skip(in.peek()) &&
         hexValue(in.peek()) >= 0 && in.skip(in.peek());
}

// Reads a name of letters, digits, _ and %XX, in parts with dots between them.
bool readVariable(Reader& in) {
  do {
    std::size_t size = 0;
    for (; isLetter(in.peek()) || isDigit(in.peek()) || in.peek() == '_' || in.peek() == '%';
         ++size) {
      if (in.peek() == '%' ? !skipPercentCode(in) : !in.skip(in.peek())) {
        return false;
      }
    }
    if (size == 0) {
      return false;
    }
  } while (in.skip('.'));
  return true;
}

// Reads :1 to :9999, or *, or nothing.
bool readModifier(Reader& in) {
  if (in.skip('*') || !in.skip(':')) {
    return true;
  }
  const bool zero = in.peek() == '0';
  const std::size_t digits = in.skipDigits();
  return !zero && digits >= 1 && digits <= 4;
}

// Reads the rest of {+name,name:3,name*}: perhaps an operator, then variables.
bool readExpression(Reader& in) {
  if (in.peek() != '\0' && strchr("+#./;?&", in.peek()) != nullptr) {
    in.skip(in.peek());
  }
  do {
    if (!readVariable(in) || !readModifier(in)) {
      return false;
    }
  } while (in.skip(','));
  return in.skip('}');
}

// A character that stands for itself outside of expressions.
bool isLiteral(char c) {
  return static_cast<unsigned char>(c) > ' ' && c != '\x7f' && strchr("\"<>\\^`|}", c) == nullptr;
}

}  // namespace

bool isUri(std::string_view text, bool international) {
  const std::size_t scheme = schemeSize(text);
  return scheme > 0 && UriChecker(international).isRest(text.substr(scheme));
}

// A URI, or the rest of one without a scheme.
bool isUriReference(std::string_view text, bool international) {
  if (isUri(text, international)) {
    return true;
  }
  const std::size_t colon =
      text.find_first_of(":/?#");  // one in the first segment would end a scheme
  return (colon == kNone || text[colon] != ':') && UriChecker(international).isRest(text);
}

// Expressions in braces, %XX, and characters that stand for themselves.
bool isUriTemplate(std::string_view text) {
  Reader in(text);
  while (!in.atEnd()) {
    const bool valid = in.skip('{')       ? readExpression(in)
                       : in.peek() == '%' ? skipPercentCode(in)
                                          : isLiteral(in.peek()) && in.skip(in.peek());
    if (!valid) {
      return false;
    }
  }
  return isUtf8(text);
}

}  // namespace hearth::schema
