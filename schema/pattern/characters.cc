// Translates the characters of a pattern and the sets of them (\uXXXX, \s, \p{Letter}, [a-z]). Each
// becomes what means the same to PCRE2: an escaped character its code as \x{...}, \s a list of the
// white space that ECMA-262 knows, the long name of a category a short one.
//
// Surrogates need care. ECMA-262 writes a character beyond U+FFFF as two of them, which become one
// code. A single one is a character to ECMA-262 that stands in no text here, and none at all to
// PCRE2: it becomes something that never matches, and a range loses those in it.
#include <cstdio>
#include <cstring>

#include "base/ascii.h"
#include "base/utf8.h"
#include "schema/pattern/translator.h"

namespace hearth::schema {
namespace {

// What \s and \S stand for, as the inside of a class.
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

// Escapes that mean the same inside a class and outside.
bool Translator::takeCommonEscape(bool inClass) {
  const char c = peek(1);
  if (c == 'p' || c == 'P') {
    return takeProperty();
  }
  if (c == 'c') {
    return isLetter(peek(2)) && copy(3);
  }
  if (c != '\0' && strchr("dDwW", c) != nullptr) {
    return copy(2);
  }
  uint32_t code = 0;
  return readCodePoint(code) && write(code, inClass);
}

// \p{Name} and \p{Key=Name}. A category may have its key before it, and its name in any spelling of
// case, blanks, '_' and '-'. Another name is left to PCRE2, which wants a ':' for the '='.
bool Translator::takeProperty() {
  const std::size_t end = in_.find('}', at_);
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
  // ";letter=" is found in the table whatever the case and signs of the name were.
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
  if (known != nullptr) {
    known += normal.size();
    out_.append(known, static_cast<std::size_t>(strchr(known, ';') - known));
  } else {
    for (const char c : name) {
      out_ += c == '=' ? ':' : c;
    }
  }
  at_ = end;
  return copy(1);
}

// Reads so many hexadecimal digits, `from` so far ahead, without going on behind them.
bool Translator::readHex(std::size_t from, std::size_t digits, uint32_t& code) const {
  code = 0;
  for (std::size_t i = 0; i < digits; ++i) {
    const int value = hexValue(peek(from + i));
    if (value < 0) {
      return false;
    }
    code = code << 4 | static_cast<uint32_t>(value);
  }
  return true;
}

// Reads an escape that stands for one character, such as \t, \0, \x41 or \$.
bool Translator::readCodePoint(uint32_t& code) {
  const char c = peek(1);
  switch (c) {
    case 't':
    case 'n':
    case 'v':
    case 'f':
    case 'r': {
      constexpr char kNames[] = "tnvfr";
      constexpr char kValues[] = "\t\n\v\f\r";
      code = static_cast<unsigned char>(kValues[strchr(kNames, c) - kNames]);
      break;
    }
    case '0':
      if (isDigit(peek(2))) {
        return false;
      }
      code = 0;
      break;
    case 'x':
      return readHex(2, 2, code) && ((at_ += 4), true);
    case 'u':
      return readUnicode(code);
    default:
      // Punctuation stands for itself; a letter would mean something that ECMA-262 does not know.
      if (c == '\0' || isLetter(c) || isDigit(c) || (c & 0x80)) {
        return false;
      }
      code = static_cast<unsigned char>(c);
      break;
  }
  at_ += 2;
  return true;
}

// Reads \uXXXX, a pair of surrogates written so, or \u{X}.
bool Translator::readUnicode(uint32_t& code) {
  if (peek(2) == '{') {
    const std::size_t end = in_.find('}', at_);
    const std::size_t digits = end == std::string_view::npos ? 0 : end - at_ - 3;
    std::size_t zeros = 0;  // as many as one likes, before up to six digits
    while (zeros < digits && peek(3 + zeros) == '0') {
      ++zeros;
    }
    if (digits == 0 || digits - zeros > 6 || !readHex(3 + zeros, digits - zeros, code) ||
        code > kLastCodePoint) {
      return false;
    }
    at_ = end + 1;
    return true;
  }
  if (!readHex(2, 4, code)) {
    return false;
  }
  at_ += 6;
  uint32_t low = 0;
  if ((code & 0xFC00) == 0xD800 && peek() == '\\' && peek(1) == 'u' && readHex(2, 4, low) &&
      (low & 0xFC00) == 0xDC00) {
    code = 0x10000 + ((code & 0x3FF) << 10) + (low & 0x3FF);
    at_ += 6;
  }
  return true;
}

// Writes one character. A lone surrogate is in no text: nothing in a class, and outside one a
// condition that never holds.
bool Translator::write(uint32_t code, bool inClass) {
  if (isSurrogate(code)) {
    out_ += inClass ? "" : "(?!)";
    return true;
  }
  char text[16];
  snprintf(text, sizeof(text), "\\x{%x}", static_cast<unsigned>(code));
  out_ += text;
  return true;
}

// \s and \S. Inside a class \S cannot be the negation of a list, and is one of its own.
bool Translator::takeSpaces(bool inClass) {
  const bool isNegated = peek(1) == 'S';
  at_ += 2;
  if (inClass) {
    out_ += isNegated ? kNoSpace : kSpace;
    return true;
  }
  out_ += isNegated ? "[^" : "[";
  out_ += kSpace;
  out_ += ']';
  return true;
}

// [...] and [^...]. The members are taken one by one; "[]" is a class without any.
bool Translator::takeClass() {
  copy(peek(1) == '^' ? 2 : 1);
  while (peek() != ']') {
    if (at_ >= in_.size() || !takeClassItem()) {
      return false;
    }
  }
  return copy(1);
}

// One member of a class, or a range of them; a range loses the surrogates in it.
bool Translator::takeClassItem() {
  uint32_t from = 0;
  bool isSingle = false;
  if (!readClassAtom(from, isSingle)) {
    return false;
  }
  if (!isSingle) {
    return true;
  }
  if (peek() != '-' || peek(1) == ']' || at_ + 1 >= in_.size()) {
    return write(from, true);
  }
  ++at_;
  uint32_t to = 0;
  const std::size_t before = out_.size();
  if (!readClassAtom(to, isSingle)) {
    return false;
  }
  if (!isSingle) {  // [a-\d]: the dash stands for itself, and the set is written already
    out_.insert(before, "\\-");
    return write(from, true);
  }
  if (from > to) {
    return false;
  }
  // The ends move out of the surrogates; a range of nothing else disappears.
  from = isSurrogate(from) ? 0xE000 : from;
  to = isSurrogate(to) ? 0xD7FF : to;
  if (from <= to) {
    write(from, true);
    out_ += '-';
    write(to, true);
  }
  return true;
}

// Reads one character of a class, or writes a set such as \d at once; isSingle tells which.
bool Translator::readClassAtom(uint32_t& code, bool& isSingle) {
  isSingle = false;
  if (peek() != '\\') {
    isSingle = true;
    return readCharacter(code);
  }
  const char c = peek(1);
  if (c == 's' || c == 'S') {
    return takeSpaces(true);
  }
  if (c == 'b') {  // a backspace here, a word's boundary elsewhere
    code = '\b';
    isSingle = true;
    at_ += 2;
    return true;
  }
  if (c == 'c') {
    code = static_cast<uint32_t>(peek(2)) & 0x1F;
    isSingle = true;
    at_ += 3;
    return isLetter(in_.size() >= at_ ? in_[at_ - 1] : '\0');
  }
  if (c != '\0' && strchr("dDwWpP", c) != nullptr) {
    return takeCommonEscape(true);
  }
  isSingle = true;
  return readCodePoint(code);
}

// Reads one character of the pattern itself; false when it is not UTF-8.
bool Translator::readCharacter(uint32_t& code) {
  std::string_view rest = in_.substr(at_);
  const bool taken = takeCharacter(rest, code);
  at_ = in_.size() - rest.size();
  return taken;
}

}  // namespace hearth::schema
