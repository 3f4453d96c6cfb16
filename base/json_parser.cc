// json-c's parser takes a text in pieces and reports a value as soon as it is complete. Two of its
// habits need care here:
//   - A number or a word at the very end of a text could go on in the next piece, so the parser
//     waits. A second piece, a line end, makes it finish. A NUL would too, but one behind a
//     comment that nobody closed makes the parser answer with the innermost value it has.
//   - Where memory runs out inside a value, the parser leaves that part out without an error. It
//     does leave ENOMEM in errno, which nothing else on the way sets, so errno is asked.
#include "base/json_parser.h"

#include <cerrno>
#include <memory>

namespace hearth {
namespace {

struct FreeTokener {
  void operator()(json_tokener* tokener) const { json_tokener_free(tokener); }
};

}  // namespace

ParsedJson parseJson(std::string_view text, int flags) {
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

}  // namespace hearth
