// A negative number is no option, but the parser would take it for one: it is moved behind a "--"
// at the end, where it is VALUE as before.
#include "tools/command/command_line.h"

#include <algorithm>

#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// "; did you mean 'get'?", or nothing.
std::string suggestCommand(const CLI::App& app, const std::string& word) {
  std::vector<std::string> names;
  for (const CLI::App* const command :
       app.get_subcommands([](const CLI::App* sub) { return !sub->get_group().empty(); })) {
    names.push_back(command->get_name());
  }
  return didYouMean(word, names);
}

// "no option '--frob'; did you mean '--from'?", or what else is one word too many.
std::string surplus(const CLI::App& app, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  if (name.size() < 2 || name[0] != '-') {
    return inQuotes(word) + " is one word too many";
  }
  std::vector<std::string> names;
  for (const CLI::Option* const option : app.get_options()) {
    for (const std::string& longName : option->get_lnames()) {
      names.push_back("--" + longName);
    }
  }
  return "no option " + inQuotes(name) + didYouMean(name, names);
}

// The options that a message of the parser names.
std::vector<std::string> optionsIn(const std::string& text) {
  std::vector<std::string> names;
  for (std::size_t at = 0; (at = text.find("--", at)) != std::string::npos;) {
    const std::size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at);
    names.push_back(text.substr(at, end - at));
    at += names.back().size();
  }
  return names;
}

// What is wrong with the command line: the parser's words are about its own notions. `app` is the
// chosen command, or the command line if none is chosen.
std::string wrongIn(const CLI::App& app, const std::string& surplusWord,
                    const CLI::ParseError& error) {
  const std::string text = error.what();
  const std::vector<std::string> options = optionsIn(text.substr(0, text.find('\n')));
  const auto kind = static_cast<CLI::ExitCodes>(error.get_exit_code());
  if (kind == CLI::ExitCodes::RequiredError) {
    const std::string missing = text.substr(0, text.find(" is required"));
    return missing == "A subcommand" ? "which command?" : missing + " is missing";
  }
  if (kind == CLI::ExitCodes::ExtrasError) {
    return surplus(app, surplusWord);
  }
  if (kind == CLI::ExitCodes::ExcludesError && options.size() >= 2) {
    return options[0] + " and " + options[1] + " do not go together";
  }
  if (kind == CLI::ExitCodes::ExcludesError && options.size() == 1) {
    return "VALUE and " + options[0] + " do not go together";
  }
  if (kind == CLI::ExitCodes::ArgumentMismatch && !options.empty()) {
    const bool isRepeated =
        text.find("At Most") != std::string::npos || text.find(", got 2") != std::string::npos;
    return options[0] + (isRepeated ? " stands there twice" : " needs a word behind it");
  }
  return options.empty() ? "the command line makes no sense" : options[0] + " makes no sense here";
}

}  // namespace

void addAllCommands(CLI::App& app, Context& context) {
  addValueCommands(app, context);
  addMovingCommands(app, context);
  addDescribingCommands(app, context);
  addFindingCommand(app, context);
  addListingCommands(app, context);
  addCheckingCommands(app, context);
  addComparingCommands(app, context);
  addHistoryCommands(app, context);
  addBatchCommands(app, context);
  addTransferCommands(app, context);
  addStoreCommands(app, context);
  addWatchingCommands(app, context);
  addConfigurationCommands(app, context);
  addCompletion(app, context);
}

std::vector<std::string> parserWords(std::vector<std::string> words) {
  const auto end = std::find(words.begin(), words.end(), "--");
  const auto isNegative = [](const std::string& word) {
    return word.size() > 1 && word[0] == '-' && (isdigit(static_cast<unsigned char>(word[1])) != 0);
  };
  const auto negative = std::stable_partition(
      words.begin(), end, [&](const std::string& word) { return !isNegative(word); });
  // One "--" in front of the numbers serves for all words behind it; a second would be a word.
  if (negative != end) {
    words.insert(negative, "--");
    words.erase(std::remove(std::find(words.begin(), words.end(), "--") + 1, words.end(), "--"),
                words.end());
  }
  std::reverse(words.begin(), words.end());
  return words;
}

Failure explained(const CLI::App& app, const CLI::ParseError& error) {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  const std::vector<std::string> surplusWords = app.remaining(true);
  const std::string word = surplusWords.empty() ? "" : surplusWords.front();
  const CLI::App& speaker = chosen.empty() ? app : *chosen.front();
  std::string text = wrongIn(speaker, word, error);
  if (chosen.empty() && !word.empty() && word[0] != '-') {
    text = "no command " + inQuotes(word) + suggestCommand(app, word);
  }
  const std::string command = chosen.empty() ? "" : chosen.front()->get_name() + " ";
  return {Exit::kUsage, text + " (try 'hearth " + command + "--help')"};
}

}  // namespace hearth::tool
