// What is known about characters of all scripts: their width on a terminal, and their small form.
// Both come from tables of our own, so that the answers are the same on every system and in every
// locale.
#ifndef HEARTH_TOOLS_TERMINAL_CHARACTERS_H
#define HEARTH_TOOLS_TERMINAL_CHARACTERS_H

#include <cstddef>
#include <string>
#include <string_view>

namespace hearth::tool {

// How many columns the text takes on a terminal: two for a wide character, as of Chinese, Japanese
// and Korean, none for a mark that stands on the character before it, else one.
[[nodiscard]] std::size_t width(std::string_view text);

// The text cut to so many columns, ending in "\u2026" (an ellipsis) where something is missing.
[[nodiscard]] std::string cutTo(std::string_view text, std::size_t columns);

// The text in small letters, to compare texts without regard to case: Latin, Greek, Cyrillic,
// Armenian and fullwidth letters that have a small form of one character. Others are left as they
// are, and so are bytes that are no UTF-8.
[[nodiscard]] std::string folded(std::string_view text);

}  // namespace hearth::tool

#endif
