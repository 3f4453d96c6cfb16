// Command lines as words: what main and a batch do with them.
#ifndef HEARTH_TOOLS_COMMAND_COMMAND_LINE_H
#define HEARTH_TOOLS_COMMAND_COMMAND_LINE_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "tools/command/command.h"

namespace hearth::tool {

// Every command there is.
void addAllCommands(CLI::App& app, Context& context);

// The words in the reverse order that the parser takes, with negative numbers where it does not
// take them for options.
[[nodiscard]] std::vector<std::string> parserWords(std::vector<std::string> words);

// What the parser did not like, in this command's words where the parser's would not help.
[[nodiscard]] Failure explained(const CLI::App& app, const CLI::ParseError& error);

}  // namespace hearth::tool

#endif
