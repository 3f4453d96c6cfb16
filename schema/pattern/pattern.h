// Regular expressions in ECMA-262's flavour, matched by PCRE2. A pattern is compiled when it is
// first needed and kept for the rest of the validation, in a cache of fixed size.
#ifndef HEARTH_SCHEMA_PATTERN_PATTERN_H
#define HEARTH_SCHEMA_PATTERN_PATTERN_H

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "schema/effort.h"

namespace hearth::schema {

// Gives the pattern in PCRE2's words, and if it holds a quantifier. False when it is no ECMA-262
// pattern.
[[nodiscard]] bool translatePattern(std::string_view pattern, std::string& translated,
                                    bool& repeats);

class Patterns {
 public:
  explicit Patterns(Effort& effort) : effort_(effort) {}
  ~Patterns();
  Patterns(const Patterns&) = delete;
  Patterns& operator=(const Patterns&) = delete;

  // True when the text holds a match of the pattern. The address of the pattern's text names it: it
  // must stay as it is while the validation lasts. A pattern that cannot be used stops the effort.
  [[nodiscard]] bool matches(std::string_view pattern, std::string_view text);

  // The same for a pattern of this program's own, in PCRE2's flavour; true when this PCRE2 lacks
  // something that it needs.
  [[nodiscard]] bool matchesOwn(const char* pattern, std::string_view text);

  // True for a usable ECMA-262 pattern. Any other one stops nothing.
  [[nodiscard]] bool isPattern(std::string_view pattern);

 private:
  struct Compiled {
    const char* name = nullptr;  // the text that it was made from
    pcre2_code* code = nullptr;
    pcre2_match_data* data = nullptr;
    bool isAnchored = false;
    bool repeats = false;
    bool isBeyondPcre2 = false;  // not compiled, though ECMA-262 knows it
  };
  static constexpr std::size_t kCached = 32;

  bool prepare();
  bool compile(std::string_view source, bool repeats, Compiled& entry);
  Compiled& entryOf(const char* name);
  static void release(Compiled& entry);
  bool search(const Compiled& entry, std::string_view text);
  [[nodiscard]] static std::size_t costOf(const Compiled& entry, std::size_t size, uint32_t limit);

  Effort& effort_;
  pcre2_compile_context* compileContext_ = nullptr;
  pcre2_match_context* matchContext_ = nullptr;
  Compiled cache_[kCached];
};

}  // namespace hearth::schema

#endif
