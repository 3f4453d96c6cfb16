// complete: the words that could come next on a command line, one per line, for shells.
//
// tools/hearth.bash passes the words so far, the unfinished one last. What can follow is taken from
// the command line's own tables, from the areas and labels, and from the document itself.
#include "hearth/be_config.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/document.h"

namespace hearth::tool {
namespace {

struct CompleteOptions {
  CLI::App* app = nullptr;
  std::vector<std::string> words;
};

using Words = std::vector<std::string>;

Words optionsOf(const CLI::App& app) {
  Words words;
  for (const CLI::Option* const option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      words.push_back("--" + name);
    }
  }
  return words;
}

Words commandsOf(const CLI::App& app) {
  Words words;
  for (const CLI::App* const command : app.get_subcommands({})) {
    if (!command->get_group().empty()) {
      words.push_back(command->get_name());
    }
  }
  return words;
}

const CLI::App* commandNamed(const CLI::App& app, const std::string& name) {
  const auto found =
      app.get_subcommands([&](const CLI::App* command) { return command->get_name() == name; });
  return found.empty() ? nullptr : found.front();
}

// The steps that can follow the finished part of a path.
Words pathsIn(const std::string& target, const std::string& unfinished) {
  Words words;
  const std::size_t dot = unfinished.rfind('.');
  const Path parent(unfinished.substr(0, dot == std::string::npos ? 0 : dot));
  const Document document{Target(target)};
  Place place{};
  if (!find(document.root(), parent, place)) {
    return words;
  }
  walk(place.value, [&](const Path& step, json_object*) {
    if (step.tokens.size() == 1 && step.isAddressable()) {
      words.push_back((parent / step.tokens[0]).text());
    }
  });
  return words;
}

// What the n-th word that is no option stands for, by command.
enum class Word { kTarget, kArea, kPath, kMessage, kOther };
struct CommandWords {
  const char* command;
  Word words[2];
};
constexpr CommandWords kCommandWords[] = {
    {"get", {Word::kTarget, Word::kPath}},   {"set", {Word::kTarget, Word::kPath}},
    {"del", {Word::kTarget, Word::kPath}},   {"add", {Word::kTarget, Word::kPath}},
    {"find", {Word::kTarget, Word::kOther}}, {"show", {Word::kTarget, Word::kOther}},
    {"labels", {Word::kArea, Word::kOther}}, {"validate", {Word::kArea, Word::kMessage}},
    {"import", {Word::kArea, Word::kOther}}, {"export", {Word::kArea, Word::kOther}},
};

Words candidates(Word word, const std::string& first, const std::string& unfinished) {
  switch (word) {
    case Word::kTarget:
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

Words candidatesFor(const CLI::App& app, const Words& words) {
  Words plain;  // the words that are no options, without the unfinished one
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    if (words[i] == "--data" && i + 2 < words.size()) {
      BEConfig::DATA_LOCATION = words[++i];
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
  for (const CommandWords& row : kCommandWords) {
    if (row.command == plain[0] && plain.size() <= std::size(row.words)) {
      return candidates(row.words[plain.size() - 1], plain.size() > 1 ? plain[1] : "", unfinished);
    }
  }
  return {};
}

// A command line that makes no sense yet has no candidates; it is not an error.
void complete(Context& context, const CompleteOptions& options) {
  if (options.words.empty()) {
    return;
  }
  try {
    for (const std::string& word : candidatesFor(*options.app, options.words)) {
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
  completing.app->group("");
}

}  // namespace hearth::tool
