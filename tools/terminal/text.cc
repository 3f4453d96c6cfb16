// Escaping goes character by character: what a terminal would obey, and what is no character, is
// written as an escape; everything else is copied. Suggestions take the candidate that the fewest
// edits turn into the word.
#include "tools/terminal/text.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "base/utf8.h"

namespace hearth::tool {
namespace {

// True for what a terminal obeys or hides: the control characters below blank and behind DEL, the
// marks that turn the direction of writing (U+200E, U+202A and following), and invisible ones such
// as the zero-width blanks and the byte-order mark.
bool isObeyed(uint32_t code) {
  return code < 0x20 || (code >= 0x7f && code < 0xa0) || (code >= 0x200b && code <= 0x200f) ||
         (code >= 0x2028 && code <= 0x202e) || (code >= 0x2060 && code <= 0x206f) || code == 0xfeff;
}

// "\n", "\x1b" or "\u202e" for people, "\u001b" in JSON. Four digits are enough: the codes are
// those of isObeyed, or bytes.
std::string escapeOf(const Character& character, Escapes escapes) {
  if (character.code == '\n' && escapes == Escapes::kTerminal) {
    return "\\n";
  }
  const bool isShort = escapes == Escapes::kTerminal && character.code < 0x100;
  char text[16];
  std::snprintf(text, sizeof(text), isShort ? "\\x%02x" : "\\u%04x", character.code);
  return text;
}

// The number of edits between two words: a character put in, left out or changed, or two neighbours
// swapped. cost[i][j] is the number for the first i characters of one and j of the other.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> cost(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        cost[i][j] = i + j;
        continue;
      }
      const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
      cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + change});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
      }
    }
  }
  return cost[a.size()][b.size()];
}

}  // namespace

std::string escaped(std::string_view text, Escapes escapes) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    // JSON has no escape for a byte that is no UTF-8.
    const bool isStray = !character.isValid && escapes == Escapes::kTerminal;
    if (isStray || (character.isValid && isObeyed(character.code))) {
      result += escapeOf(character, escapes);
    } else {
      result += text.substr(0, character.size);
    }
    text.remove_prefix(character.size);
  }
  return result;
}

std::string inQuotes(std::string_view text) {
  constexpr std::size_t kLongest = 120;
  if (text.size() > kLongest) {
    return "'" + escaped(startOf(text, kLongest), Escapes::kTerminal) + "...'";
  }
  return "'" + escaped(text, Escapes::kTerminal) + "'";
}

std::size_t columns(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); text.remove_prefix(firstCharacter(text).size)) {
    ++count;
  }
  return count;
}

std::string utcText(std::time_t time) {
  struct tm fields {};
  char text[64];
  if (gmtime_r(&time, &fields) == nullptr ||
      strftime(text, sizeof(text), "%Y-%m-%dT%H:%M:%SZ", &fields) == 0) {
    return "";
  }
  return text;
}

std::string counted(std::size_t count, const char* thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string didYouMean(std::string_view word, const std::vector<std::string>& candidates) {
  constexpr std::size_t kLongest = 64;  // the search is quadratic, and longer words are no typos
  // A short word is near to anything, so it may differ in less: one edit in two or three
  // characters, two in longer words.
  std::size_t nearest = std::min<std::size_t>(3, word.size() / 2 + 1);
  std::string_view best;
  for (const std::string& candidate : candidates) {
    if (word.size() > kLongest || candidate.size() > kLongest) {
      continue;
    }
    const std::size_t far = distance(word, candidate);
    if (far < nearest) {  // of equally near ones the first stays
      nearest = far;
      best = candidate;
    }
  }
  return best.empty() ? "" : "; did you mean " + inQuotes(best) + "?";
}

}  // namespace hearth::tool
