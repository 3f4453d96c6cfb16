// json-c's parser takes a text in pieces and reports a value as soon as it is complete. Three of
// its habits need care here:
//   - A number or a word at the very end of a text could go on in the next piece, so the parser
//     waits. A second piece, a line end, makes it finish. A NUL would too, but one behind a
//     comment that nobody closed makes the parser answer with the innermost value it has.
//   - Where memory runs out inside a value, the parser leaves that part out without an error. It
//     does leave ENOMEM in errno, which nothing else on the way sets, so errno is asked.
//   - Where char is signed, the strict mode of json-c 0.18 takes a byte above 0x7f in a string for
//     a control character. The text is then judged with letters in the place of these bytes.
#include "base/json_parser.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <utility>

namespace hearth {
namespace {

struct FreeTokener {
  void operator()(json_tokener* tokener) const { json_tokener_free(tokener); }
};

bool isAscii(char c) {
  return static_cast<unsigned char>(c) <= 0x7f;
}

ParsedJson parseOnce(std::string_view text, int flags) {
  ParsedJson parsed;
  const std::unique_ptr<json_tokener, FreeTokener> tokener(json_tokener_new());
  if (tokener == nullptr) {
    parsed.isOutOfMemory = true;
    return parsed;
  }
  json_tokener_set_flags(tokener.get(), flags);
  errno = 0;
  parsed.value.reset(
      json_tokener_parse_ex(tokener.get(), text.data(), static_cast<int>(text.size())));
  parsed.end = json_tokener_get_parse_end(tokener.get());
  parsed.error = json_tokener_get_error(tokener.get());
  if (parsed.error == json_tokener_continue) {
    constexpr char kEnd[] = {'\n'};
    parsed.value.reset(json_tokener_parse_ex(tokener.get(), kEnd, sizeof(kEnd)));
    const bool isComplete = json_tokener_get_error(tokener.get()) == json_tokener_success;
    parsed.error = isComplete ? json_tokener_success : json_tokener_error_parse_eof;
  }
  parsed.isOutOfMemory = errno == ENOMEM;
  if (!parsed.isValid()) {  // a value with holes must not be taken for the text's
    parsed.value.reset();
  }
  return parsed;
}

// Mistaken or not: a byte that is wrong in UTF-8 ends the text at the same place.
bool mayBeMistaken(const ParsedJson& parsed, std::string_view text) {
  return (parsed.error == json_tokener_error_parse_string ||
          parsed.error == json_tokener_error_parse_utf8_string) &&
         parsed.end < text.size() && !isAscii(text[parsed.end]);
}

// The strict verdict comes from a text with an "x" for each byte above 0x7f: like these, an "x" is
// right inside strings alone, and never behind a backslash. The value, or an earlier error, is the
// text's own.
ParsedJson parseWithLetters(std::string_view text, int flags) {
  ParsedJson verdict;
  const std::unique_ptr<char[]> letters(new (std::nothrow) char[text.size()]);
  if (letters == nullptr) {
    verdict.isOutOfMemory = true;
    return verdict;
  }
  std::transform(text.begin(), text.end(), letters.get(),
                 [](char c) { return isAscii(c) ? c : 'x'; });
  verdict = parseOnce({letters.get(), text.size()}, flags);
  ParsedJson own = parseOnce(text, flags & ~JSON_TOKENER_STRICT);
  const bool isWrongBefore = !own.isValid() && own.end < verdict.end;
  return verdict.isValid() || isWrongBefore ? std::move(own) : std::move(verdict);
}

}  // namespace

ParsedJson parseJson(std::string_view text, int flags) {
  ParsedJson parsed = parseOnce(text, flags);
  return (flags & JSON_TOKENER_STRICT) != 0 && mayBeMistaken(parsed, text)
             ? parseWithLetters(text, flags)
             : std::move(parsed);
}

}  // namespace hearth
