// batch: the command that runs a script of commands as one change.
//
// Each line is a command line without the word hearth. All of them work on one transaction, in
// which a line sees what the lines before it have done; only when the last one has succeeded are
// the areas checked and saved.
#include <algorithm>
#include <optional>

#include "tools/command/command_line.h"
#include "tools/document/area.h"
#include "tools/document/input.h"
#include "tools/document/replacement.h"
#include "tools/document/transaction.h"
#include "tools/store/differences.h"
#include "tools/store/shell_words.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct BatchOptions {
  std::string file;
  bool dryRun = false;
  bool resume = false;
  bool drop = false;
  bool force = false;
};

// The commands of values and of documents; the others work on files, which no transaction holds.
constexpr const char* kCommands[] = {"get", "set",  "del", "add",      "cp",
                                     "mv",  "find", "ls",  "describe", "show"};

// The parser keeps what it has parsed, so each line gets one of its own.
void runLine(Context& context, const std::vector<std::string>& words) {
  if (std::find(std::begin(kCommands), std::end(kCommands), words[0]) == std::end(kCommands)) {
    throw Failure(Exit::kUsage,
                  "a batch takes no command " + inQuotes(words[0]) +
                      didYouMean(words[0], {std::begin(kCommands), std::end(kCommands)}));
  }
  CLI::App app("", "hearth");
  app.require_subcommand(1);
  addAllCommands(app, context);
  try {
    app.parse(parserWords(words));
  } catch (const CLI::ParseError& error) {
    throw explained(app, error);
  }
  if (context.exit != Exit::kDone) {
    throw Failure(context.exit, inQuotes(words[0]) + " ended with exit code " +
                                    std::to_string(static_cast<int>(context.exit)));
  }
}

Failure inLine(std::size_t number, const Failure& failure) {
  Failure named(failure.exit(),
                "line " + std::to_string(number) + ": " + failure.what() + "; nothing is changed",
                failure.broken);
  named.area = failure.area;
  named.path = failure.path;
  return named;
}

// Runs the script line by line. Throws a Failure that names the line which ends it.
void runLines(Context& context, std::string_view script) {
  for (std::size_t number = 1; !script.empty(); ++number) {
    const std::size_t end = std::min(script.find('\n'), script.size());
    try {
      const std::vector<std::string> words = shellWords(script.substr(0, end));
      if (!words.empty()) {
        runLine(context, words);
      }
    } catch (const Failure& failure) {
      throw inLine(number, failure);
    }
    script.remove_prefix(std::min(end + 1, script.size()));
  }
}

// Prints what a commit would change.
void show(Context& context, const Transaction& transaction) {
  for (const auto& [area, staged] : transaction.areas()) {
    const Handle old = parse(staged.text, databaseFile(area));
    for (const Difference& difference : differencesOf(old->jobj, staged.document->jobj)) {
      context.out.line(lineOf(difference, API_DATA_DIR[area], context.out));
    }
  }
}

// Finishes or gives up what a batch or a restore has left half done.
void mend(const BatchOptions& options) {
  if (!hasInterrupted()) {
    Context::note("no change of several areas was interrupted");
  } else if (options.resume) {
    finishInterrupted(options.force);
  } else if (dropInterrupted()) {
    Context::note("the rest of the interrupted change is given up");
  }
}

void batch(Context& context, const BatchOptions& options) {
  if (options.resume || options.drop) {
    mend(options);
    return;
  }
  if (options.file.empty()) {
    throw Failure(Exit::kUsage, "batch takes FILE, - for standard input");
  }
  const std::string script = readWhole(options.file);
  Transaction transaction;
  runLines(context, script);
  if (options.dryRun) {
    transaction.check();
    show(context, transaction);
  } else {
    transaction.commit();
  }
}

}  // namespace

void addBatchCommands(CLI::App& app, Context& context) {
  const auto batching = addCommand<BatchOptions>(
      app, context, "batch",
      "Run a script of commands on areas as one change: all of it happens, or nothing\n\n"
      "A command a line, without the word hearth; words are quoted as for a shell, # begins a\n"
      "comment. Schemas are checked at the end. A change of several areas that is interrupted\n"
      "while it is saved is finished by the next edit, or by --resume.",
      "  hearth batch changes.txt\n"
      "  printf '%s\\n' 'set wifi radios.[0].channel 11' 'del misc old' | hearth batch -\n"
      "  hearth batch --dry-run changes.txt     what would it change?",
      batch);
  batching.app->add_option("FILE", batching.options.file, "the script, - for standard input");
  batching.app->add_flag("--dry-run", batching.options.dryRun,
                         "print what would change, and change nothing");
  CLI::Option* const resume = batching.app->add_flag("--resume", batching.options.resume,
                                                     "finish a change that was interrupted");
  batching.app
      ->add_flag("--drop", batching.options.drop, "give up the rest of one that was interrupted")
      ->excludes(resume);
  batching.app
      ->add_flag("--force", batching.options.force,
                 "with --resume: although areas were changed since")
      ->needs(resume);
}

}  // namespace hearth::tool
