// Arguments and options that several commands share.
#ifndef HEARTH_TOOLS_COMMAND_ARGUMENTS_H
#define HEARTH_TOOLS_COMMAND_ARGUMENTS_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "tools/command/command.h"
#include "tools/document/loaded_file.h"

namespace hearth::tool {

constexpr char kAreaOrFileHelp[] = "an area (hearth areas), or a JSON file";
constexpr char kPathHelp[] = "names and indexes joined by dots: 'radios.[0].channel'";
constexpr char kManyPathHelp[] =
    "names and indexes joined by dots: 'radios.[0].channel'; [*] is each element";

inline void addSaveOptions(CLI::App& command, SaveOptions& options) {
  command.add_flag("--force", options.force,
                   "save although the file has changed meanwhile, or a save changes more");
  command.add_flag("--no-schema", options.noSchema,
                   "save although the result does not conform to AREA_SCHEMA.ldb");
}

// AREA|FILE and PATH, in options.areaOrFile and options.path.
template <typename Options>
void addPathArguments(const Command<Options>& command, const char* pathHelp = kPathHelp) {
  command.app->add_option("AREA|FILE", command.options.areaOrFile, kAreaOrFileHelp)->required();
  command.app->add_option("PATH", command.options.path, pathHelp)->required();
}

inline void addWhere(CLI::App& command, std::vector<std::string>& conditions) {
  command
      .add_option("--where", conditions,
                  "only elements of the last [*] whose KEY is VALUE, as get prints it")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
}

}  // namespace hearth::tool

#endif
