// Translates ECMA-262's regular expressions (with Unicode on) to PCRE2's. Most of both is the same
// and copied. What differs is rewritten, and what PCRE2 would read as something of its own is
// refused: inline options, atomic groups, possessive quantifiers, verbs, and escapes such as \A or
// \Q. Whether groups are closed and quantifiers have something to repeat is left to PCRE2, which
// reads the result anyway. This file has the frame of a pattern (groups, quantifiers, references);
// the characters in it and the sets of them are in characters.cc.
#include <cstring>

#include "base/ascii.h"
#include "schema/pattern/pattern.h"
#include "schema/pattern/translator.h"

namespace hearth::schema {

char Translator::peek(std::size_t ahead) const {
  return at_ + ahead < in_.size() ? in_[at_ + ahead] : '\0';
}

bool Translator::copy(std::size_t size) {
  out_ += in_.substr(at_, size);
  at_ += size;
  return true;
}

bool Translator::translate() {
  while (at_ < in_.size()) {
    if (!takeItem()) {
      return false;
    }
  }
  return true;
}

// A dot means any character but a line's end, and ECMA-262 knows two more of these than PCRE2.
bool Translator::takeItem() {
  switch (peek()) {
    case '\\':
      return takeEscape();
    case '[':
      return takeClass();
    case '(':
      return takeGroup();
    case '.':
      out_ += R"([^\n\r\x{2028}\x{2029}])";
      ++at_;
      return true;
    case '*':
    case '+':
    case '?':
      return takeQuantifier(1);
    case '{':
      return takeBrace();
    default:
      return copy(1);
  }
}

// A quantifier of that many bytes, perhaps lazy, never possessive.
bool Translator::takeQuantifier(std::size_t size) {
  repeats_ = true;
  copy(size);
  if (peek() == '?') {
    copy(1);
  }
  return peek() != '+' && peek() != '*' && peek() != '?';
}

// {n}, {n,} and {n,m} are quantifiers; any other brace stands for itself.
bool Translator::takeBrace() {
  std::size_t size = 1;
  while (isDigit(peek(size))) {
    ++size;
  }
  bool isCount = size > 1;
  if (isCount && peek(size) == ',') {
    do {
      ++size;
    } while (isDigit(peek(size)));
  }
  isCount = isCount && peek(size) == '}';
  if (isCount) {
    return takeQuantifier(size + 1);
  }
  out_ += "\\{";
  ++at_;
  return true;
}

// (?: (?= (?! (?<= (?<! and (?<name> are all that ECMA-262 knows behind "(?"; "(*" begins a verb of
// PCRE2's.
bool Translator::takeGroup() {
  if (peek(1) == '*') {
    return false;
  }
  if (peek(1) != '?') {
    return copy(1);
  }
  const bool isPlain = strchr(":=!", peek(2)) != nullptr && peek(2) != '\0';
  const bool looksBehind = peek(2) == '<' && (peek(3) == '=' || peek(3) == '!');
  const bool isNamed = peek(2) == '<' && (isLetter(peek(3)) || peek(3) == '_');
  return (isPlain || looksBehind || isNamed) && copy(looksBehind ? 4 : 3);
}

// The escapes that mean something only outside a class; the others are takeCommonEscape's.
bool Translator::takeEscape() {
  const char c = peek(1);
  if (c == 's' || c == 'S') {
    return takeSpaces(false);
  }
  if (c == 'b' || c == 'B') {
    return copy(2);
  }
  if (c == 'k') {
    return peek(2) == '<' && copy(3);
  }
  if (c >= '1' && c <= '9') {
    return takeBackReference();
  }
  return takeCommonEscape(false);
}

// \12 is written as \g{12}, so that digits behind it do not join in.
bool Translator::takeBackReference() {
  out_ += "\\g{";
  for (++at_; isDigit(peek()); ++at_) {
    out_ += peek();
  }
  out_ += '}';
  return true;
}

bool translatePattern(std::string_view pattern, std::string& translated, bool& repeats) {
  Translator translator(pattern, translated);
  const bool isPattern = translator.translate();
  repeats = translator.repeats();
  return isPattern;
}

}  // namespace hearth::schema
