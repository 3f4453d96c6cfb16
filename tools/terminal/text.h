// Makes text from files and arguments, which may be any bytes, fit for messages and terminals.
#ifndef HEARTH_TOOLS_TERMINAL_TEXT_H
#define HEARTH_TOOLS_TERMINAL_TEXT_H

#include <cstddef>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace hearth::tool {

// How to write a character that a terminal would obey instead of show (control characters, also
// those that turn the direction of writing), and a byte that is no UTF-8.
enum class Escapes {
  kTerminal,  // "\n", "\x1b", "\u202e": for people
  kJson,      // "\u001b": stays the same JSON text; a byte that is no UTF-8 is left as it is
};
[[nodiscard]] std::string escaped(std::string_view text, Escapes escapes);

// The text in quotes, harmless, on one line, and cut when it is long.
[[nodiscard]] std::string inQuotes(std::string_view text);

// How many columns the text takes, at one for each character.
[[nodiscard]] std::size_t columns(std::string_view text);

// "1 element", "2 elements".
[[nodiscard]] std::string counted(std::size_t count, const char* thing);

// "2026-11-23T12:00:00Z"; empty for a time that no calendar reaches.
[[nodiscard]] std::string utcText(std::time_t time);

// "; did you mean 'wifi'?" for the candidate that is nearest to the word; empty when none is near.
[[nodiscard]] std::string didYouMean(std::string_view word,
                                     const std::vector<std::string>& candidates);

}  // namespace hearth::tool

#endif
