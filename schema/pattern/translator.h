// The translator of regular expressions.
#ifndef HEARTH_SCHEMA_PATTERN_TRANSLATOR_H
#define HEARTH_SCHEMA_PATTERN_TRANSLATOR_H

#include <cstdint>
#include <string>
#include <string_view>

namespace hearth::schema {

// Stands somewhere in the pattern and has written what is before that. A step whose name begins
// with "take" reads one thing and writes what it is for PCRE2; one that begins with "read" only
// reads. Each answers false when the pattern is none of ECMA-262's, or none that PCRE2 could be
// given.
class Translator {
 public:
  Translator(std::string_view pattern, std::string& out) : in_(pattern), out_(out) {}

  bool translate();

  [[nodiscard]] bool repeats() const { return repeats_; }

 private:
  // The byte so far ahead; NUL behind the end.
  [[nodiscard]] char peek(std::size_t ahead = 0) const;
  bool copy(std::size_t size);

  // The frame of a pattern, in translate.cc.
  bool takeItem();
  bool takeQuantifier(std::size_t size);
  bool takeBrace();
  bool takeGroup();
  bool takeEscape();
  bool takeBackReference();

  // Characters and sets of them, in characters.cc.
  bool takeCommonEscape(bool inClass);
  bool takeProperty();
  bool readHex(std::size_t from, std::size_t digits, uint32_t& code) const;
  bool readCodePoint(uint32_t& code);
  bool readUnicode(uint32_t& code);
  bool write(uint32_t code, bool inClass);
  bool takeSpaces(bool inClass);
  bool takeClass();
  bool takeClassItem();
  bool readClassAtom(uint32_t& code, bool& isSingle);
  bool readCharacter(uint32_t& code);

  std::string_view in_;
  std::string& out_;
  std::size_t at_ = 0;
  bool repeats_ = false;
};

}  // namespace hearth::schema

#endif
