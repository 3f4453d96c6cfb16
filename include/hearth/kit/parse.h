// Parsing with a reason: which line, which column, what was expected there.
//
//   hearth::Result<hearth::Value> body = hearth::parse(request.body);
//   if (!body) {
//     return badRequest(body.failure().sentence);  // line 3, column 7: expected "," or "}", but
//     ...
//   }
//
// What is read is JSON as its standard has it, in UTF-8, and nothing json-c lets through beside: no
// comments, no NaN, no leading zeros, no text behind the value, no half of a surrogate pair.
// Refused as well is what would not be kept as it was written: an integer beyond 64 bits, a
// fraction too large for a double, a member whose name has a NUL, and, unless the options allow it,
// a member that stands twice. (JsonData::createObject and createObjectFromFile read as json-c
// does.)
//
// Sentences name what is wrong, never the text itself, which may hold a secret.
// Threads: any.
// Ownership: the value is the caller's.
// Cost: the text is walked twice, once to check it and once by json-c to make the value.
#ifndef HEARTH_KIT_PARSE_H
#define HEARTH_KIT_PARSE_H

#include <fcntl.h>
#include <json-c/json.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hearth/kit/handle.h"
#include "hearth/kit/result.h"
#include "hearth/kit/text.h"
#include "hearth/kit/walk.h"

namespace hearth {

struct ParseOptions {
  bool allowsDuplicates = false;  // the last of members with one name counts, as for json-c
};

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

// The members of all objects in a value that the parser has read.
inline std::size_t countMembers(View value) {
  std::size_t count = members(value).size();
  for (const Member& member : members(value)) {
    count += countMembers(member.value);
  }
  for (const View element : elements(value)) {
    count += countMembers(element);
  }
  return count;
}

// The value of a text that has been checked.
inline Result<Value> made(std::string_view checked) {
  struct Free {
    void operator()(json_tokener* tokener) const { json_tokener_free(tokener); }
  };
  const std::unique_ptr<json_tokener, Free> tokener(json_tokener_new());
  if (tokener == nullptr) {
    return failure(Fault::kNoMemory, "there is no memory for the parser");
  }
  // The parser takes a number for whole only when something follows it.
  errno = 0;
  Value value(
      json_tokener_parse_ex(tokener.get(), checked.data(), static_cast<int>(checked.size())));
  if (json_tokener_get_error(tokener.get()) == json_tokener_continue) {
    value = Value(json_tokener_parse_ex(tokener.get(), "", 1));
  }
  if (json_tokener_get_error(tokener.get()) != json_tokener_success || errno == ENOMEM) {
    return failure(Fault::kNoMemory, "there is no memory for the value");
  }
  return value;
}

struct CloseFile {
  explicit CloseFile(int opened) : fd(opened) {}
  ~CloseFile() {
    if (fd >= 0) {
      close(fd);
    }
  }
  CloseFile(const CloseFile&) = delete;
  CloseFile& operator=(const CloseFile&) = delete;
  const int fd;
};

// Only regular files are opened: a device may do something by itself, a pipe may block.
inline Result<std::string> contentsOf(Name file) {
  const auto refused = [&file](const char* what) {
    return failure(Fault::kNoFile, std::string(file.get()) + ": " + what);
  };
  if (file.isEmpty()) {
    return failure(Fault::kBadArgument, "the file's name is null, empty, or has a NUL inside");
  }
  struct stat status = {};
  if (stat(file.get(), &status) != 0) {
    return refused(std::strerror(errno));
  }
  if (!S_ISREG(status.st_mode)) {
    return refused("no regular file");
  }
  const CloseFile opened(open(file.get(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (opened.fd < 0) {
    return refused(std::strerror(errno));
  }
  std::string contents;
  char part[4096];
  for (;;) {
    const ssize_t got = ::read(opened.fd, part, sizeof part);
    if (got == 0) {
      return contents;
    }
    if (got < 0 && errno != EINTR) {
      return refused(std::strerror(errno));
    }
    if (got > 0) {
      contents.append(part, static_cast<std::size_t>(got));
    }
    if (contents.size() > static_cast<std::size_t>(INT_MAX / 2)) {
      return refused("the file is too large");
    }
  }
}

}  // namespace detail

// The value that the text stands for; an empty Value for null.
// Failure: kBadText, with line and column; kNoMemory.
inline Result<Value> parse(Text text, const ParseOptions& options = {}) {
  if (text.view().size() > static_cast<std::size_t>(INT_MAX / 2)) {
    return detail::failure(Fault::kBadText, "the text is too long");
  }
  detail::JsonCheck check(text.view(), false);
  if (!check.check()) {
    return check.reason();
  }
  Result<Value> value = detail::made(text.view());
  // json-c keeps one of several members with one name: it then has fewer than were written.
  if (value && !options.allowsDuplicates && detail::countMembers(*value) != check.members()) {
    detail::JsonCheck search(text.view(), true);
    static_cast<void>(search.check());
    return search.reason();
  }
  return value;
}

// The value in a file.
// Failure: as parse, the sentence then begins with the file's name; kNoFile when there is no such
// file, it is no regular one or cannot be read; kBadArgument for a name that is none.
inline Result<Value> parseFile(Name file, const ParseOptions& options = {}) {
  const Result<std::string> contents = detail::contentsOf(file);
  if (!contents) {
    return contents.failure();
  }
  Result<Value> value = parse(*contents, options);
  if (value) {
    return value;
  }
  Failure failure = value.failure();
  failure.sentence.insert(0, std::string(file.get()) + ": ");
  return failure;
}

}  // namespace hearth

#endif
