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

}  // namespace

void addAllCommands(CLI::App& app, Context& context) {
  addValueCommands(app, context);
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
  std::string text = error.what();
  text = text.substr(0, text.find('\n'));
  if (text == "A subcommand is required") {
    text = "which command?";
  }
  if (chosen.empty() && !app.remaining().empty()) {
    const std::string word = app.remaining().front();
    text = "no command " + inQuotes(word) + suggestCommand(app, word);
  }
  const std::string command = chosen.empty() ? "" : chosen.front()->get_name() + " ";
  return {Exit::kUsage, text + " (try 'hearth " + command + "--help')"};
}

}  // namespace hearth::tool
