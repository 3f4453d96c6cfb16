// The characters of a pattern and the sets of them (\s, \uXXXX, \p{Letter}, [a-z]). Each becomes
// what means the same to PCRE2: a character its code, \s a list, a long name a short one.
#include <cstdio>
#include <cstring>

#include "base/utf8.h"
#include "schema/format/reader.h"
#include "schema/pattern/translator.h"

namespace hearth {
namespace schema {
namespace {

constexpr char kSpace[] = R"(\t-\r \x{a0}\x{1680}\x{2000}-\x{200a}\x{2028}\x{2029}\x{202f}\x{205f})"
                          R"(\x{3000}\x{feff})";
constexpr char kNoSpace[] =
    R"(\x{0}-\x{8}\x{e}-\x{1f}!-\x{9f}\x{a1}-\x{167f}\x{1681}-\x{1fff})"
    R"(\x{200b}-\x{2027}\x{202a}-\x{202e}\x{2030}-\x{205e}\x{2060}-\x{2fff})"
    R"(\x{3001}-\x{fefe}\x{ff00}-\x{10ffff})";

// The long names of general categories, each with the short one that PCRE2 knows.
constexpr char kCategories[] =
    ";letter=L;casedletter=L&;uppercaseletter=Lu;lowercaseletter=Ll;titlecaseletter=Lt"
    ";modifierletter=Lm;otherletter=Lo;mark=M;combiningmark=M;nonspacingmark=Mn;spacingmark=Mc"
    ";enclosingmark=Me;number=N;decimalnumber=Nd;digit=Nd;letternumber=Nl;othernumber=No"
    ";punctuation=P;punct=P;connectorpunctuation=Pc;dashpunctuation=Pd;openpunctuation=Ps"
    ";closepunctuation=Pe;initialpunctuation=Pi;finalpunctuation=Pf;otherpunctuation=Po;symbol=S"
    ";mathsymbol=Sm;currencysymbol=Sc;modifiersymbol=Sk;othersymbol=So;separator=Z"
    ";spaceseparator=Zs;lineseparator=Zl;paragraphseparator=Zp;other=C;control=Cc;cntrl=Cc"
    ";format=Cf;surrogate=Cs;privateuse=Co;unassigned=Cn;";

}  // namespace

// The escapes that mean the same inside a class and outside.
bool Translator::commonEscape(bool inClass) {
  const char c = peek(1);
  if (c == 'p' || c == 'P') {
    return property();
  }
  if (c == 'c') {
    return isLetter(peek(2)) && copy(3);
  }
  if (c != '\0' && strchr("dDwW", c)) {
    return copy(2);
  }
  uint32_t code = 0;
  return codePoint(&code) && emit(code, inClass);
}

// \p{Name} and \p{Key=Name}, the long names of categories made short.
bool Translator::property() {
  const size_t end = in_.find('}', at_);
  if (peek(2) != '{' || end == std::string_view::npos) {
    return false;
  }
  std::string_view name = in_.substr(at_ + 3, end - at_ - 3);
  for (const std::string_view key : {"General_Category=", "gc="}) {
    if (name.substr(0, key.size()) == key) {
      name.remove_prefix(key.size());
      break;
    }
  }
  std::string normal = ";";
  for (const char c : name) {
    if (isLetter(c)) {
      normal += static_cast<char>(c | 0x20);
    } else if (c != '_' && c != ' ' && c != '-') {
      normal += c;
    }
  }
  normal += '=';
  copy(3);
  const char* known = strstr(kCategories, normal.c_str());
  if (known) {
    known += normal.size();
    out_.append(known, static_cast<size_t>(strchr(known, ';') - known));
  } else {
    for (const char c : name) {
      out_ += c == '=' ? ':' : c;
    }
  }
  at_ = end;
  return copy(1);
}

bool Translator::hex(size_t from, size_t digits, uint32_t* code) const {
  *code = 0;
  for (size_t i = 0; i < digits; ++i) {
    const int value = hexValue(peek(from + i));
    if (value < 0) {
      return false;
    }
    *code = *code << 4 | static_cast<uint32_t>(value);
  }
  return true;
}

// Reads an escape that stands for one character.
bool Translator::codePoint(uint32_t* code) {
  const char c = peek(1);
  switch (c) {
    case 't':
    case 'n':
    case 'v':
    case 'f':
    case 'r': {
      constexpr char kNames[] = "tnvfr";
      constexpr char kValues[] = "\t\n\v\f\r";
      *code = static_cast<unsigned char>(kValues[strchr(kNames, c) - kNames]);
      break;
    }
    case '0':
      if (isDigit(peek(2))) {
        return false;
      }
      *code = 0;
      break;
    case 'x':
      return hex(2, 2, code) && ((at_ += 4), true);
    case 'u':
      return unicode(code);
    default:
      // Punctuation stands for itself; a letter would mean something that ECMA-262 does not know.
      if (c == '\0' || isLetter(c) || isDigit(c) || (c & 0x80)) {
        return false;
      }
      *code = static_cast<unsigned char>(c);
      break;
  }
  at_ += 2;
  return true;
}

// \uXXXX, a pair of surrogates written so, and \u{X}.
bool Translator::unicode(uint32_t* code) {
  if (peek(2) == '{') {
    const size_t end = in_.find('}', at_);
    const size_t digits = end == std::string_view::npos ? 0 : end - at_ - 3;
    size_t zeros = 0;  // as many as one likes, before up to six digits
    while (zeros < digits && peek(3 + zeros) == '0') {
      ++zeros;
    }
    if (digits == 0 || digits - zeros > 6 || !hex(3 + zeros, digits - zeros, code) ||
        *code > kLastCodePoint) {
      return false;
    }
    at_ = end + 1;
    return true;
  }
  if (!hex(2, 4, code)) {
    return false;
  }
  at_ += 6;
  uint32_t low = 0;
  if ((*code & 0xFC00) == 0xD800 && peek() == '\\' && peek(1) == 'u' && hex(2, 4, &low) &&
      (low & 0xFC00) == 0xDC00) {
    *code = 0x10000 + ((*code & 0x3FF) << 10) + (low & 0x3FF);
    at_ += 6;
  }
  return true;
}

// A lone surrogate is in no text.
bool Translator::emit(uint32_t code, bool inClass) {
  if (isSurrogate(code)) {
    out_ += inClass ? "" : "(?!)";
    return true;
  }
  char text[16];
  snprintf(text, sizeof text, "\\x{%x}", static_cast<unsigned>(code));
  out_ += text;
  return true;
}

// \s and \S; inside a class the second one has to be a list of its own.
bool Translator::spaces(bool inClass) {
  const bool negated = peek(1) == 'S';
  at_ += 2;
  if (inClass) {
    out_ += negated ? kNoSpace : kSpace;
    return true;
  }
  out_ += negated ? "[^" : "[";
  out_ += kSpace;
  out_ += ']';
  return true;
}

bool Translator::characterClass() {
  copy(peek(1) == '^' ? 2 : 1);
  while (peek() != ']') {
    if (at_ >= in_.size() || !classItem()) {
      return false;
    }
  }
  return copy(1);
}

// One member of a class, or a range of them; a range loses the surrogates in it.
bool Translator::classItem() {
  uint32_t from = 0;
  bool single = false;
  if (!classAtom(&from, &single)) {
    return false;
  }
  if (!single) {
    return true;
  }
  if (peek() != '-' || peek(1) == ']' || at_ + 1 >= in_.size()) {
    return emit(from, true);
  }
  ++at_;
  uint32_t to = 0;
  const size_t before = out_.size();
  if (!classAtom(&to, &single)) {
    return false;
  }
  if (!single) {  // [a-\d]: the dash is itself
    out_.insert(before, "\\-");
    return emit(from, true);
  }
  if (from > to) {
    return false;
  }
  from = isSurrogate(from) ? 0xE000 : from;
  to = isSurrogate(to) ? 0xD7FF : to;
  if (from <= to) {
    emit(from, true);
    out_ += '-';
    emit(to, true);
  }
  return true;
}

// Reads one character of a class into *code, or writes a set such as \d out at once.
bool Translator::classAtom(uint32_t* code, bool* single) {
  *single = false;
  if (peek() != '\\') {
    *single = true;
    return utf8(code);
  }
  const char c = peek(1);
  if (c == 's' || c == 'S') {
    return spaces(true);
  }
  if (c == 'b') {
    *code = '\b';
    *single = true;
    at_ += 2;
    return true;
  }
  if (c == 'c') {
    *code = static_cast<uint32_t>(peek(2)) & 0x1F;
    *single = true;
    at_ += 3;
    return isLetter(in_.size() >= at_ ? in_[at_ - 1] : '\0');
  }
  if (c != '\0' && strchr("dDwWpP", c)) {
    return commonEscape(true);
  }
  *single = true;
  return codePoint(code);
}

// Reads one character of the pattern itself; false when it is not UTF-8.
bool Translator::utf8(uint32_t* code) {
  std::string_view rest = in_.substr(at_);
  const bool taken = takeCharacter(rest, *code);
  at_ = in_.size() - rest.size();
  return taken;
}

}  // namespace schema
}  // namespace hearth
