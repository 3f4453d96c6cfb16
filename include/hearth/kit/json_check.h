// The check of a text by JSON's standard, which parse.h makes before json-c reads the text: json-c
// takes more than the standard and says less about what is wrong.
//
// The check walks the text once, byte by byte. It keeps a level for each container that is open, so
// that it needs no recursion, and stops at the first thing that cannot stand where it does.
#ifndef HEARTH_KIT_JSON_CHECK_H
#define HEARTH_KIT_JSON_CHECK_H

#include <json-c/json.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hearth/kit/result.h"
#include "hearth/kit/text.h"

namespace hearth {
namespace detail {

// The walk over a text that is to be JSON. Each step returns false at the first thing that is
// wrong, after which at_ is its place and expected_ what should stand there.
class JsonCheck {
 public:
  // The parser's own limit on containers in containers.
  static constexpr std::size_t kMostLevels = JSON_TOKENER_DEFAULT_DEPTH - 1;

  // With `findsDuplicates`, a member that stands twice is wrong.
  JsonCheck(std::string_view text, bool findsDuplicates)
      : text_(text), findsDuplicates_(findsDuplicates) {}

  bool check() {
    skipSpace();
    while (value()) {
      // A value has ended; so has each container that ends right behind it.
      while (isInside() && closes()) {
      }
      if (!isInside()) {
        return at_ == text_.size() || fail("the end of the text");
      }
      if (!separate()) {
        break;
      }
    }
    return false;
  }

  // Of a check that answered true: the members of all objects.
  std::size_t members() const { return members_; }

  // Of a check that answered false.
  Failure reason() const {
    Failure made = failure(Fault::kBadText, "");
    made.line = 1;
    made.column = 1;
    for (const char c : text_.substr(0, at_)) {
      if (c == '\n') {
        ++made.line;
        made.column = 1;
      } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
        ++made.column;
      }
    }
    made.sentence = "line " + std::to_string(made.line) + ", column " +
                    std::to_string(made.column) + ": expected " + expected_ + ", but there is " +
                    found();
    return made;
  }

 private:
  struct Level {
    bool isObject;
    std::set<std::string> names;  // filled only where duplicates are sought
  };

  bool isInside() const { return !levels_.empty(); }
  bool isAtEnd() const { return at_ == text_.size(); }
  // NUL at the end, and for a NUL.
  char here() const { return isAtEnd() ? '\0' : text_[at_]; }

  bool fail(const char* expected) {
    expected_ = expected;
    return false;
  }

  // The same at an earlier place, about something that has been read already.
  bool failAt(std::size_t place, const char* expected, const char* found) {
    at_ = place;
    found_ = found;
    return fail(expected);
  }

  // What stands at at_, without showing it unless it is a sign of JSON's own.
  std::string found() const {
    if (found_ != nullptr) {
      return found_;
    }
    if (isAtEnd()) {
      return "the end of the text";
    }
    const char c = here();
    if (std::strchr("{}[],:\"", c) != nullptr && c != '\0') {
      return std::string("'") + c + "'";
    }
    if (isDigit(c) || c == '-') {
      return "a number";
    }
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) {
      return "a letter";
    }
    if (c == '\0') {
      return "a NUL";
    }
    return static_cast<unsigned char>(c) < 0x20 ? "a control character" : "something else";
  }

  static bool isDigit(char c) { return c >= '0' && c <= '9'; }

  void skipSpace() {
    while (!isAtEnd() && (here() == ' ' || here() == '\t' || here() == '\n' || here() == '\r')) {
      ++at_;
    }
  }

  // A value, down to the first scalar or empty container in it; the space behind it is skipped.
  bool value() {
    for (;;) {
      const char c = here();
      if (c != '{' && c != '[') {
        const bool isRead = c == '"' ? string(nullptr) : scalar();
        if (isRead) {
          skipSpace();
        }
        return isRead;
      }
      if (levels_.size() == kMostLevels) {
        return fail("a value nested no deeper than 31 levels");
      }
      levels_.push_back({c == '{', {}});
      ++at_;
      skipSpace();
      if (here() == closing()) {
        return true;
      }
      if (c == '{' && !name("a member's name or \"}\"")) {
        return false;
      }
    }
  }

  char closing() const { return levels_.back().isObject ? '}' : ']'; }

  // Leaves the container when it ends here.
  bool closes() {
    if (here() != closing()) {
      return false;
    }
    levels_.pop_back();
    ++at_;
    skipSpace();
    return true;
  }

  // From one member or element to the next.
  bool separate() {
    const bool isObject = levels_.back().isObject;
    if (here() != ',') {
      return fail(isObject ? "\",\" or \"}\"" : "\",\" or \"]\"");
    }
    ++at_;
    skipSpace();
    return !isObject || name("a member's name");
  }

  // A member's name and its colon.
  bool name(const char* expected) {
    if (here() != '"') {
      return fail(expected);
    }
    const std::size_t start = at_;
    std::string read;
    hasNul_ = false;
    if (!string(findsDuplicates_ ? &read : nullptr)) {
      return false;
    }
    if (hasNul_) {
      return failAt(start, "a member's name without a NUL", "one with a NUL");
    }
    if (findsDuplicates_ && !levels_.back().names.insert(std::move(read)).second) {
      return failAt(start, "another member", "one whose name stands here already");
    }
    ++members_;
    skipSpace();
    if (here() != ':') {
      return fail("\":\"");
    }
    ++at_;
    skipSpace();
    return true;
  }

  bool scalar() {
    const char c = here();
    if (isDigit(c) || c == '-') {
      return number();
    }
    for (const std::string_view word : {"true", "false", "null"}) {
      if (c == word[0]) {
        if (text_.substr(at_, word.size()) != word) {
          return fail("true, false or null");
        }
        at_ += word.size();
        return true;
      }
    }
    return fail("a value");
  }

  bool digits() {
    if (!isDigit(here())) {
      return fail("a digit");
    }
    while (isDigit(here())) {
      ++at_;
    }
    return true;
  }

  bool number() {
    const std::size_t start = at_;
    at_ += here() == '-' ? 1U : 0U;
    const bool isZero = here() == '0';
    if (!digits()) {
      return false;
    }
    if (isZero && at_ != start + 1 + (text_[start] == '-' ? 1U : 0U)) {
      return failAt(start, "a number without leading zeros", "one that has them");
    }
    bool isWhole = true;
    if (here() == '.') {
      isWhole = false;
      ++at_;
      if (!digits()) {
        return false;
      }
    }
    if (here() == 'e' || here() == 'E') {
      isWhole = false;
      ++at_;
      at_ += here() == '+' || here() == '-' ? 1U : 0U;
      if (!digits()) {
        return false;
      }
    }
    const std::string written(text_.substr(start, at_ - start));
    return isWhole
               ? fits(written) || failAt(start, "an integer of at most 64 bits", "a longer one")
               : isFinite(written) || failAt(start, "a number that a double holds", "a larger one");
  }

  static bool fits(const std::string& integer) {
    errno = 0;
    if (integer[0] == '-') {
      static_cast<void>(std::strtoll(integer.c_str(), nullptr, 10));
    } else {
      static_cast<void>(std::strtoull(integer.c_str(), nullptr, 10));
    }
    return errno != ERANGE;
  }

  // Asked without a decimal point, which is another one in other locales: 1.5e3 is 15e2.
  static bool isFinite(const std::string& number) {
    const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
    const std::size_t point = std::min(number.find('.'), mark);
    const std::size_t fraction = point < mark ? mark - point - 1 : 0;
    constexpr long kHuge = 1000000000;
    const long written =
        mark < number.size() ? std::strtol(number.c_str() + mark + 1, nullptr, 10) : 0;
    const long exponent = std::min(std::max(written, -kHuge), kHuge) - static_cast<long>(fraction);
    const std::string digits =
        number.substr(0, point) + number.substr(mark - fraction, fraction) + "e";
    return std::isfinite(std::strtod((digits + std::to_string(exponent)).c_str(), nullptr));
  }

  // A string with its quotation marks; what it stands for goes to `out`, if that is not null.
  bool string(std::string* out) {
    ++at_;
    for (;;) {
      const auto c = static_cast<unsigned char>(here());
      if (isAtEnd()) {
        return fail("the quotation mark that ends the text");
      }
      if (c == '"') {
        ++at_;
        return true;
      }
      if (c < 0x20) {
        return fail("an escape sequence");
      }
      if (c == '\\' ? !escape(out) : !character(out)) {
        return false;
      }
    }
  }

  // One character in UTF-8: no overlong form, no surrogate, nothing beyond U+10FFFF.
  bool character(std::string* out) {
    const auto byte = [this](std::size_t offset) {
      return at_ + offset < text_.size() ? static_cast<unsigned char>(text_[at_ + offset]) : 0U;
    };
    const unsigned int first = byte(0);
    const std::size_t size = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    bool isGood = first < 0x80 || (first >= 0xC2 && first <= 0xF4);
    for (std::size_t i = 1; i < size; ++i) {
      isGood = isGood && (byte(i) & 0xC0U) == 0x80U;
    }
    isGood = isGood && !(first == 0xE0 && byte(1) < 0xA0) && !(first == 0xED && byte(1) > 0x9F) &&
             !(first == 0xF0 && byte(1) < 0x90) && !(first == 0xF4 && byte(1) > 0x8F);
    if (!isGood) {
      return fail("a character in UTF-8");
    }
    if (out != nullptr) {
      out->append(text_.substr(at_, size));
    }
    at_ += size;
    return true;
  }

  bool escape(std::string* out) {
    constexpr std::string_view kEscapes = "\"\\/bfnrt";
    constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
    const std::size_t start = at_++;
    if (here() == 'u') {
      ++at_;
      return unicodeEscape(start, out);
    }
    const std::size_t which = kEscapes.find(here());
    if (isAtEnd() || which == std::string_view::npos) {
      return failAt(start, "an escape sequence of JSON", "another one");
    }
    if (out != nullptr) {
      out->push_back(kMeanings[which]);
    }
    ++at_;
    return true;
  }

  bool hexadecimal(uint32_t& number) {
    number = 0;
    for (int i = 0; i < 4; ++i, ++at_) {
      constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
      const std::size_t digit = isAtEnd() ? std::string_view::npos : kDigits.find(here());
      if (digit == std::string_view::npos) {
        return fail("four hexadecimal digits");
      }
      number = number * 16 + static_cast<uint32_t>(digit < 16 ? digit : digit - 6);
    }
    return true;
  }

  bool unicodeEscape(std::size_t start, std::string* out) {
    uint32_t number = 0;
    if (!hexadecimal(number)) {
      return false;
    }
    if (number >= 0xD800 && number <= 0xDFFF) {
      uint32_t second = 0;
      const bool isPair = number < 0xDC00 && text_.substr(at_, 2) == "\\u";
      at_ += isPair ? 2U : 0U;
      if (!isPair || !hexadecimal(second) || second < 0xDC00 || second > 0xDFFF) {
        return failAt(start, "both halves of a surrogate pair", "only one");
      }
      number = 0x10000 + ((number - 0xD800) << 10U) + (second - 0xDC00);
    }
    hasNul_ = hasNul_ || number == 0;
    if (out != nullptr) {
      append(*out, number);
    }
    return true;
  }

  static void append(std::string& out, uint32_t number) {
    const auto put = [&out](uint32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (number < 0x80) {
      put(number);
      return;
    }
    if (number < 0x800) {
      put(0xC0U | number >> 6U);
    } else {
      if (number < 0x10000) {
        put(0xE0U | number >> 12U);
      } else {
        put(0xF0U | number >> 18U);
        put(0x80U | (number >> 12U & 0x3FU));
      }
      put(0x80U | (number >> 6U & 0x3FU));
    }
    put(0x80U | (number & 0x3FU));
  }

  const std::string_view text_;
  const bool findsDuplicates_;
  std::vector<Level> levels_;
  std::size_t at_ = 0;
  std::size_t members_ = 0;
  bool hasNul_ = false;  // in the string read last
  const char* expected_ = "";
  const char* found_ = nullptr;  // null: what stands at at_
};

}  // namespace detail
}  // namespace hearth

#endif
