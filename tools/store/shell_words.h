// A line cut into words as a shell cuts it, without any of a shell's expansions: blanks part words;
// in '...' everything stands for itself; in "..." a backslash takes the special meaning off " \ $
// and
// `; elsewhere off any character. A # at the beginning of a word begins a comment.
#ifndef HEARTH_TOOLS_STORE_SHELL_WORDS_H
#define HEARTH_TOOLS_STORE_SHELL_WORDS_H

#include <string>
#include <string_view>
#include <vector>

namespace hearth::tool {

// Throws a Failure for a quote that is not closed, and for a backslash at the end of the line.
[[nodiscard]] std::vector<std::string> shellWords(std::string_view line);

}  // namespace hearth::tool

#endif
