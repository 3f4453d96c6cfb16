// Asks the person at the terminal.
#ifndef HEARTH_TOOLS_TERMINAL_QUESTION_H
#define HEARTH_TOOLS_TERMINAL_QUESTION_H

#include <string>

namespace hearth::tool {

// True when the answer begins with y. False for any other answer, and at once where nobody can be
// asked: where standard input or standard error is no terminal.
[[nodiscard]] bool ask(const std::string& question);

}  // namespace hearth::tool

#endif
