// The hearth command: its command line, and how every failure ends as one line and an exit code.
//
// The command line is CLI11's. Its callbacks run the chosen command while it parses; a command that
// cannot do its work throws a Failure through the parser to main, which prints it. The output of a
// command that succeeds is written last.
#include <json-c/json.h>

#include <new>

#include "hearth/be_config.h"
#include "hearth/logger.h"
#include "hearth/version.h"
#include "tools/command/command_line.h"
#include "tools/document/loaded_file.h"
#include "tools/document/value.h"

#ifdef HEARTH_HAS_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif

namespace hearth::tool {
namespace {

// The end of the help of the command line as a whole.
constexpr char kHelp[] =
    "Examples:\n"
    "  hearth areas                                    what there is below ./data\n"
    "  hearth get wifi 'radios.[0].channel'            read a value\n"
    "  hearth set wifi 'radios.[0].channel' 11         store one\n"
    "  hearth get wifi 'radios.[*].networks.[*].ssid'  the same in each element\n"
    "  hearth find --contains garden --ignore-case     where is it?\n"
    "  hearth describe wifi 'radios.[*].channel'       what may stand there?\n"
    "  hearth check                                    is everything as it should be?\n"
    "  hearth COMMAND --help                           options and examples of a command\n"
    "AREA is one of gateway, wifi, network, security, service, mediashare, qos, misc; FILE is any\n"
    "JSON file, ./wifi where a file has the name of an area.\n\n"
    "Exit codes:\n"
    "  0 done   1 not found, a problem   2 wrong command line   3 a file cannot be read, parsed "
    "or\n"
    "  written   4 somebody else is changing it   5 it does not conform to its schema\n\n"
    "Quote paths: a shell may take [0] for a pattern. Put -- before a word that begins with -.\n\n"
    "A save replaces the file in one step: readers see the old document or the new one. Edits by\n"
    "hearth commands, and by a backend that uses the kit, wait for each other, and none overwrites "
    "a\n"
    "change that it has not seen. What any other backend holds in memory, it may save over an "
    "edit.";

// The options of all commands.
struct GlobalOptions {
  std::string data;
  bool verbose = false;
};

// Called between parsing and running the command. The library prints its log on descriptor 1, which
// Output has joined to standard error; it goes to no file.
void configure(const GlobalOptions& options) {
  BEConfig::DATA_LOCATION = options.data;
  Logger::enableFileLog = 0;
  Logger::mask = options.verbose ? 1U << LOG_GROUP_UTIL : 0;
}

// What a report of a fault needs to name, in one line: hearth's version, and those of the libraries
// that this process runs with.
std::string versions() {
  std::string line = "hearth " HEARTH_VERSION " (json-c ";
  line += json_c_version();
#ifdef HEARTH_HAS_PCRE2
  std::string pcre2(static_cast<std::size_t>(pcre2_config(PCRE2_CONFIG_VERSION, nullptr)), '\0');
  pcre2_config(PCRE2_CONFIG_VERSION, pcre2.data());
  return line + ", PCRE2 " + pcre2.substr(0, pcre2.find(' ')) + ", built-in validator)";
#else
  return line + ", the platform's validator)";
#endif
}

// The callback runs when the words are parsed and before the command does, in whatever order the
// options and the command stand.
void addGlobals(CLI::App& app, Context& context, GlobalOptions& options) {
  options.data = BEConfig::DATA_LOCATION;
  app.add_option("--data", options.data, "the data location ($HEARTH_DATA; default ./data)")
      ->type_name("DIR")
      ->envname("HEARTH_DATA");
  app.add_flag("--verbose", options.verbose, "show the library's log on standard error");
  app.add_flag("--json", context.json, "print JSON wherever there is a choice; errors too");
  app.set_version_flag("--version", versions(), "print the versions");
  app.set_help_flag("--help,-h", "print this help");
  app.parse_complete_callback([&options] { configure(options); });
}

// Whoever is told that the output failed is told as well that an edit before it did not.
void finish(Output& out) {
  try {
    out.finish();
  } catch (const Failure& failure) {
    const std::string why = failure.what();
    throw Failure(failure.exit(), !hasSaved() ? why
                                              : (why.empty() ? "standard output is closed" : why) +
                                                    "; the change is saved");
  }
}

// True when programs read the errors: --json stands on the command line, and is not the type of a
// VALUE there.
bool saysJson(const CLI::App& app) {
  if (app.count("--json") > 0) {
    return true;
  }
  for (const CLI::App* const command : app.get_subcommands()) {
    const CLI::Option* const json = command->get_option_no_throw("--json");
    if (json != nullptr && json->count() > 0 && json->get_group() != kTypeGroup) {
      return true;
    }
  }
  return false;
}

// Puts the command line together, parses it, which runs the command, and writes the output.
int run(int argc, char** argv) {
  Context context;
  GlobalOptions globals;
  CLI::App app("Look into and change the documents and databases of a gateway", "hearth");
  // The parser's help says much about each option that its own text says better.
  for (const char* const noise : {"TEXT", "REQUIRED", "Excludes"}) {
    app.get_formatter()->label(noise, "");
  }
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("Positionals", "Arguments");
  app.fallthrough()->require_subcommand(1)->footer(kHelp);
  addGlobals(app, context, globals);
  addAllCommands(app, context);
  try {
    app.parse(parserWords({argv + 1, argv + argc}));
  } catch (const CLI::CallForHelp&) {
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    context.out.line(chosen.empty() ? app.help() : chosen.front()->help("hearth"));
  } catch (const CLI::CallForVersion& version) {
    context.out.line(version.what());
  } catch (const CLI::ParseError& error) {
    complainOf(explained(app, error), saysJson(app));
    return static_cast<int>(Exit::kUsage);
  } catch (const Failure& failure) {
    complainOf(failure, saysJson(app));
    return static_cast<int>(failure.exit());
  }
  finish(context.out);  // also prints help and version
  return static_cast<int>(context.exit);
}

}  // namespace
}  // namespace hearth::tool

// No exception leaves the command: a Failure brings its exit code, any other counts as trouble
// with a file.
int main(int argc, char** argv) {
  using namespace hearth::tool;
  try {
    return run(argc, argv);
  } catch (const Failure& failure) {
    complain(failure.what());
    return static_cast<int>(failure.exit());
  } catch (const std::bad_alloc&) {
    complain(hasSaved() ? "out of memory; the change is saved"
                        : "out of memory; nothing is changed");
    return static_cast<int>(Exit::kIo);
  } catch (const std::exception& error) {
    complain(error.what());
    return static_cast<int>(Exit::kIo);
  }
}
