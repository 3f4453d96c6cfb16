// The frame of every command. A command is a struct of options and a function that runs it;
// addCommand puts both on the command line. Each group of commands has a file of its own and one
// function that adds the group.
//
// A command prints through Context::out, which writes nothing before the command has succeeded, and
// ends with Context::exit or by throwing a Failure.
#ifndef HEARTH_TOOLS_COMMAND_COMMAND_H
#define HEARTH_TOOLS_COMMAND_COMMAND_H

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "tools/terminal/failure.h"
#include "tools/terminal/output.h"

namespace hearth::tool {

// What every command gets besides its options.
struct Context {
  Output out;
  Exit exit = Exit::kDone;  // the answer of a command that has done its work

  // Tells the user, on standard error, something about a command that goes on.
  static void note(std::string_view text) { complain("note: " + std::string(text)); }
};

// A command with its options, which live as long as the command line.
template <typename Options>
struct Command {
  CLI::App* app;
  Options& options;
};

// Adds a command that calls run(context, options) when the command line has been parsed. The first
// line of the description stands in the list of commands; the rest and the examples are printed
// below the command's options.
template <typename Options>
Command<Options> addCommand(CLI::App& app, Context& context, const std::string& name,
                            const std::string& description, const std::string& examples,
                            void (*run)(Context&, const Options&)) {
  const auto options = std::make_shared<Options>();
  const std::size_t lineEnd = description.find("\n\n");
  const bool isLong = lineEnd != std::string::npos;
  CLI::App* const command = app.add_subcommand(name, description.substr(0, lineEnd));
  command->group("Commands");
  command->footer((isLong ? description.substr(lineEnd + 2) + "\n\n" : "") + "Examples:\n" +
                  examples);
  command->callback([&context, options, run] { run(context, *options); });
  return {command, *options};
}

void addValueCommands(CLI::App& app, Context& context);          // get, set, del, add
void addListingCommands(CLI::App& app, Context& context);        // find, show, areas, labels
void addCheckingCommands(CLI::App& app, Context& context);       // validate, check
void addComparingCommands(CLI::App& app, Context& context);      // diff
void addHistoryCommands(CLI::App& app, Context& context);        // undo, log
void addBatchCommands(CLI::App& app, Context& context);          // batch
void addTransferCommands(CLI::App& app, Context& context);       // import, export
void addStoreCommands(CLI::App& app, Context& context);          // init, backup, restore
void addWatchingCommands(CLI::App& app, Context& context);       // watch
void addConfigurationCommands(CLI::App& app, Context& context);  // config, logins
void addCompletion(CLI::App& app, Context& context);             // complete, for shells

}  // namespace hearth::tool

#endif
