// From ECMA-262's regular expressions (with Unicode on) to PCRE2's. Most of both is the same. What
// differs is rewritten, and what PCRE2 would read as something of its own is refused: inline
// options, atomic groups, possessive quantifiers, verbs, and escapes such as \A or \Q. This file
// has the frame of a pattern (groups, quantifiers, references); the characters and the sets of
// characters in it are in pattern_characters.cc.
#include <cstring>

#include "schema/format/reader.h"
#include "schema/pattern/pattern.h"
#include "schema/pattern/translator.h"

namespace hearth {
namespace schema {

char Translator::peek(size_t ahead) const {
  return at_ + ahead < in_.size() ? in_[at_ + ahead] : '\0';
}

bool Translator::copy(size_t size) {
  out_ += in_.substr(at_, size);
  at_ += size;
  return true;
}

bool Translator::run() {
  while (at_ < in_.size()) {
    if (!item()) {
      return false;
    }
  }
  return true;
}

bool Translator::item() {
  switch (peek()) {
    case '\\':
      return escape();
    case '[':
      return characterClass();
    case '(':
      return group();
    case '.':
      out_ += R"([^\n\r\x{2028}\x{2029}])";
      ++at_;
      return true;
    case '*':
    case '+':
    case '?':
      return quantifier(1);
    case '{':
      return brace();
    default:
      return copy(1);
  }
}

// A quantifier of that many bytes, perhaps lazy, never possessive.
bool Translator::quantifier(size_t size) {
  repeats_ = true;
  copy(size);
  if (peek() == '?') {
    copy(1);
  }
  return peek() != '+' && peek() != '*' && peek() != '?';
}

// {n}, {n,} and {n,m} are quantifiers; any other brace is itself.
bool Translator::brace() {
  size_t size = 1;
  while (isDigit(peek(size))) {
    ++size;
  }
  bool counts = size > 1;
  if (counts && peek(size) == ',') {
    do {
      ++size;
    } while (isDigit(peek(size)));
  }
  counts = counts && peek(size) == '}';
  if (counts) {
    return quantifier(size + 1);
  }
  out_ += "\\{";
  ++at_;
  return true;
}

// (?: (?= (?! (?<= (?<! and (?<name> are all that follows "(?".
bool Translator::group() {
  if (peek(1) == '*') {
    return false;
  }
  if (peek(1) != '?') {
    return copy(1);
  }
  const bool plain = strchr(":=!", peek(2)) != nullptr && peek(2) != '\0';
  const bool behind = peek(2) == '<' && (peek(3) == '=' || peek(3) == '!');
  const bool named = peek(2) == '<' && (isLetter(peek(3)) || peek(3) == '_');
  return (plain || behind || named) && copy(behind ? 4 : 3);
}

bool Translator::escape() {
  const char c = peek(1);
  if (c == 's' || c == 'S') {
    return spaces(false);
  }
  if (c == 'b' || c == 'B') {
    return copy(2);
  }
  if (c == 'k') {
    return peek(2) == '<' && copy(3);
  }
  if (c >= '1' && c <= '9') {
    return backReference();
  }
  return commonEscape(false);
}

bool Translator::backReference() {
  out_ += "\\g{";
  for (++at_; isDigit(peek()); ++at_) {
    out_ += peek();
  }
  out_ += '}';
  return true;
}

bool translatePattern(std::string_view pattern, std::string* translated, bool* repeats) {
  Translator translator(pattern, translated);
  if (!translator.run()) {
    return false;
  }
  *repeats = translator.repeats();
  return true;
}

}  // namespace schema
}  // namespace hearth
