// complete: prints the words that could come next on a command line, one per line, for shells.
//
// tools/hearth.bash passes the words so far, the unfinished one last. A word that begins with "-"
// is completed from the command line's own tables of options. Any other is completed by its
// position behind the command: with the names of commands, areas or messages, or with the steps of
// a path, which are taken from the document itself.
#include "hearth/be_config.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/loaded_file.h"

namespace hearth::tool {
namespace {

// Besides its words, the command needs the whole command line, to look up what it knows.
struct CompleteOptions {
  CLI::App* app = nullptr;
  std::vector<std::string> words;
};

using Words = std::vector<std::string>;

// The long options of a command, or of the command line itself.
Words optionsOf(const CLI::App& app) {
  Words words;
  for (const CLI::Option* const option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      words.push_back("--" + name);
    }
  }
  return words;
}

// The commands that are meant for people: complete itself is in no group.
Words commandsOf(const CLI::App& app) {
  Words words;
  for (const CLI::App* const command : app.get_subcommands({})) {
    if (!command->get_group().empty()) {
      words.push_back(command->get_name());
    }
  }
  return words;
}

// Null when no command has the name.
const CLI::App* commandNamed(const CLI::App& app, const std::string& name) {
  const auto found =
      app.get_subcommands([&](const CLI::App* command) { return command->get_name() == name; });
  return found.empty() ? nullptr : found.front();
}

// The paths that are one step longer than the finished part of a path, up to its last dot.
Words pathsIn(const std::string& areaOrFile, const std::string& unfinished) {
  Words words;
  const std::size_t dot = unfinished.rfind('.');
  const Path parent(unfinished.substr(0, dot == std::string::npos ? 0 : dot));
  const LoadedFile document{AreaOrFile(areaOrFile)};
  PathEnd end{};
  if (!find(document.root(), parent, end)) {
    return words;
  }
  walk(end.value, [&](const Path& below, json_object*) {
    if (below.steps.size() == 1 && below.isAddressable()) {
      words.push_back((parent / below.steps[0]).text());
    }
  });
  return words;
}

// What a word behind a command stands for; options are not counted.
enum class Word { kOther, kAreaOrFile, kArea, kPath, kMessage };
struct CommandWords {
  const char* command;
  Word words[3];  // those left out are kOther
};
constexpr CommandWords kCommandWords[] = {
    {"get", {Word::kAreaOrFile, Word::kPath}},
    {"set", {Word::kAreaOrFile, Word::kPath}},
    {"del", {Word::kAreaOrFile, Word::kPath}},
    {"add", {Word::kAreaOrFile, Word::kPath}},
    {"cp", {Word::kAreaOrFile, Word::kPath, Word::kPath}},
    {"mv", {Word::kAreaOrFile, Word::kPath, Word::kPath}},
    {"ls", {Word::kAreaOrFile, Word::kPath}},
    {"describe", {Word::kArea, Word::kPath}},
    {"find", {Word::kAreaOrFile}},
    {"show", {Word::kAreaOrFile}},
    {"labels", {Word::kArea}},
    {"validate", {Word::kArea, Word::kMessage}},
    {"import", {Word::kArea}},
    {"export", {Word::kArea}},
    {"diff", {Word::kAreaOrFile, Word::kAreaOrFile}},
    {"undo", {Word::kArea}},
    {"log", {Word::kArea}},
    {"watch", {Word::kArea}},
};

// `first` is the command's first word, which chooses the document or the messages.
Words candidates(Word word, const std::string& first, const std::string& unfinished) {
  switch (word) {
    case Word::kAreaOrFile:
    case Word::kArea:
      return areaNames();
    case Word::kPath:
      return pathsIn(first, unfinished);
    case Word::kMessage:
      return labelsOf(areaOf(first));
    case Word::kOther:
      break;
  }
  return {};
}

// All words that could stand in the place of the last one, whatever that begins with.
Words candidatesFor(const CLI::App& app, const Words& words) {
  Words plain;  // the words that are no options, without the unfinished one
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    if (words[i] == "--data" && i + 2 < words.size()) {
      BEConfig::DATA_LOCATION = words[++i];  // the areas to complete from
    } else if (words[i].rfind('-', 0) != 0) {
      plain.push_back(words[i]);
    }
  }
  const std::string& unfinished = words.back();
  const CLI::App* const command = plain.empty() ? nullptr : commandNamed(app, plain[0]);
  if (unfinished.rfind('-', 0) == 0) {
    Words options = optionsOf(app);
    const Words more = command == nullptr ? Words() : optionsOf(*command);
    options.insert(options.end(), more.begin(), more.end());
    return options;
  }
  if (command == nullptr) {
    return plain.empty() ? commandsOf(app) : Words();
  }
  // plain[0] is the command, so plain.size() - 1 words behind it are finished.
  for (const CommandWords& row : kCommandWords) {
    if (row.command == plain[0] && plain.size() <= std::size(row.words)) {
      return candidates(row.words[plain.size() - 1], plain.size() > 1 ? plain[1] : "", unfinished);
    }
  }
  return {};
}

// Prints the candidates that begin as the unfinished word does. A command line that makes no sense
// yet has none; that is no error to tell.
void complete(Context& context, const CompleteOptions& options) {
  if (options.words.empty()) {
    return;
  }
  try {
    for (const std::string& word : candidatesFor(*options.app, options.words)) {
      // A name with a line feed would come out as two words.
      if (word.rfind(options.words.back(), 0) == 0 && word.find('\n') == std::string::npos) {
        context.out.line(word);
      }
    }
  } catch (const Failure&) {
    context.exit = Exit::kNo;
  }
}

}  // namespace

void addCompletion(CLI::App& app, Context& context) {
  const auto completing =
      addCommand<CompleteOptions>(app, context, "complete", "Print what can come next",
                                  "  hearth complete -- get wi", complete);
  completing.options.app = &app;
  completing.app->add_option("WORD", completing.options.words, "the words so far");
  completing.app->group("");  // in no list of commands
}

}  // namespace hearth::tool
