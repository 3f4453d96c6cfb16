// What a save would change besides what it was asked to. The kit's parser refuses nearly all of it:
// comments, text or NULs behind the value, members that stand twice, integers beyond 64 bits, bytes
// that are no UTF-8. It takes the integer -0, which is JSON, but comes back as 0.
#include <new>

#include "hearth/kit/parse.h"
#include "tools/document/input.h"

namespace hearth::tool {
namespace {

// Where "-0" stands as an integer in a text that is plain JSON; npos when it does not.
std::size_t findNegativeZero(const std::string& text) {
  bool isInString = false;
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (isInString && text[i] == '\\') {
      ++i;  // what is escaped ends no string
    } else if (text[i] == '"') {
      isInString = !isInString;
    } else if (!isInString && text[i] == '-' && text[i + 1] == '0' &&
               std::string(".eE").find(i + 2 < text.size() ? text[i + 2] : ' ') ==
                   std::string::npos) {
      return i;
    }
  }
  return std::string::npos;
}

}  // namespace

std::string whyNotPlainJson(const std::string& text) {
  const Result<Value> value = hearth::parse(text);
  if (value.failure().fault == Fault::kNoMemory) {
    throw std::bad_alloc();  // nothing is known about the text
  }
  if (!value) {
    return value.failure().sentence;
  }
  const std::size_t zero = findNegativeZero(text);
  if (zero == std::string::npos) {
    return "";
  }
  // A text that is cut off there is wrong there, and the parser names the place.
  const hearth::Failure place = hearth::parse(std::string_view(text).substr(0, zero)).failure();
  return "line " + std::to_string(place.line) + ", column " + std::to_string(place.column) +
         ": the integer -0 would become 0";
}

}  // namespace hearth::tool
