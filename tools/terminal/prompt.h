// Asks for a secret.
#ifndef HEARTH_TOOLS_TERMINAL_PROMPT_H
#define HEARTH_TOOLS_TERMINAL_PROMPT_H

#include <string>

namespace hearth::tool {

// On a terminal: asks twice, without echo; throws a Failure when the answers differ. A signal ends
// or stops the command as always, with the terminal as it was. Otherwise: all of standard input, as
// it is, without one line end behind it.
[[nodiscard]] std::string readSecret();

}  // namespace hearth::tool

#endif
