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
#include <type_traits>

#include "tools/terminal/failure.h"
#include "tools/terminal/output.h"

namespace hearth::tool {

// What every command gets besides its options.
struct Context {
  Output out;
  Exit exit = Exit::kDone;  // the answer of a command that has done its work
  bool json = false;        // --json in front of the command: JSON wherever there is a choice

  // Tells the user, on standard error, something about a command that goes on.
  static void note(std::string_view text) { complain("note: " + std::string(text)); }
};

// A command with its options, which live as long as the command line.
template <typename Options>
struct Command {
  CLI::App* app;
  Options& options;
};

namespace traits {

// Whether options have a member of this name.
template <typename Options, typename = void>
struct HasJson : std::false_type {};
template <typename Options>
struct HasJson<Options, std::void_t<decltype(Options::json)>> : std::true_type {};
template <typename Options, typename = void>
struct HasPath : std::false_type {};
template <typename Options>
struct HasPath<Options, std::void_t<decltype(Options::path)>> : std::true_type {};
template <typename Options, typename = void>
struct HasArea : std::false_type {};
template <typename Options>
struct HasArea<Options, std::void_t<decltype(Options::area)>> : std::true_type {};
template <typename Options, typename = void>
struct HasAreaOrFile : std::false_type {};
template <typename Options>
struct HasAreaOrFile<Options, std::void_t<decltype(Options::areaOrFile)>> : std::true_type {};

// Tells a failure which area and path the command line has.
template <typename Options>
void complete(Failure& failure, const Options& options) {
  if constexpr (HasAreaOrFile<Options>::value) {
    failure.area = options.areaOrFile;
  } else if constexpr (HasArea<Options>::value) {
    failure.area = options.area;
  }
  if constexpr (HasPath<Options>::value) {
    failure.path = options.path;
  }
}

// Options that have a switch `json` heed the one in front of the command too.
template <typename Options>
void runWith(Context& context, Options& options, void (*run)(Context&, const Options&)) {
  if constexpr (HasJson<Options>::value) {
    options.json = options.json || context.json;
  }
  try {
    run(context, options);
  } catch (Failure& failure) {
    complete(failure, options);
    throw;
  }
}

}  // namespace traits

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
  command->callback([&context, options, run] { traits::runWith(context, *options, run); });
  return {command, *options};
}

void addValueCommands(CLI::App& app, Context& context);          // get, set, del, add
void addMovingCommands(CLI::App& app, Context& context);         // cp, mv
void addDescribingCommands(CLI::App& app, Context& context);     // ls, describe
void addFindingCommand(CLI::App& app, Context& context);         // find
void addListingCommands(CLI::App& app, Context& context);        // show, areas, labels
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
