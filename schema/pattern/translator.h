// The translator of regular expressions: where it stands in the pattern and what it has written.
#ifndef HEARTH_SCHEMA_PATTERN_TRANSLATOR_H
#define HEARTH_SCHEMA_PATTERN_TRANSLATOR_H

#include <cstdint>
#include <string>
#include <string_view>

namespace hearth {
namespace schema {

// Each step reads one thing of the pattern and writes what it is for PCRE2. It answers false when
// the pattern is none of ECMA-262's, or none that PCRE2 could be given.
class Translator {
 public:
  Translator(std::string_view pattern, std::string* out) : in_(pattern), out_(*out) {}

  bool run();

  [[nodiscard]] bool repeats() const { return repeats_; }

 private:
  // What is ahead; '\0' behind the end.
  [[nodiscard]] char peek(size_t ahead = 0) const;
  bool copy(size_t size);

  // The frame of a pattern, in pattern_translate.cc.
  bool item();
  bool quantifier(size_t size);
  bool brace();
  bool group();
  bool escape();
  bool backReference();

  // Characters and sets of them, in pattern_characters.cc.
  bool commonEscape(bool inClass);
  bool property();
  bool hex(size_t from, size_t digits, uint32_t* code) const;
  bool codePoint(uint32_t* code);
  bool unicode(uint32_t* code);
  bool emit(uint32_t code, bool inClass);
  bool spaces(bool inClass);
  bool characterClass();
  bool classItem();
  bool classAtom(uint32_t* code, bool* single);
  bool utf8(uint32_t* code);

  std::string_view in_;
  std::string& out_;
  size_t at_ = 0;
  bool repeats_ = false;
};

}  // namespace schema
}  // namespace hearth

#endif
