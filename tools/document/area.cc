// The names of areas and messages come from the library's own tables, so the command can never know
// others than the backend. A word that no table has ends the command with the nearest one that
// does.
#include "tools/document/area.h"

#include <sys/stat.h>

#include <iterator>

#include "hearth/kit/area.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {

std::vector<std::string> areaNames() {
  return {std::begin(API_DATA_DIR), std::end(API_DATA_DIR)};
}

bool findArea(const std::string& name, unsigned int& area) {
  const std::optional<API_TYPE_T> found = areaNamed(name);
  area = found.value_or(API_GATEWAY);
  return found.has_value();
}

unsigned int areaOf(const std::string& name) {
  unsigned int area = 0;
  if (!findArea(name, area)) {
    throw Failure(Exit::kUsage, "no area " + inQuotes(name) + didYouMean(name, areaNames()) +
                                    " ('hearth areas' lists them)");
  }
  return area;
}

// A word with neither dot nor slash that names no file is more likely a misspelt area than a file
// that is missing, so the message speaks of areas. Any other word is a file, there or not.
AreaOrFile::AreaOrFile(const std::string& text) : name(text), file(text) {
  isArea = findArea(text, area);
  if (isArea) {
    file = databaseFile(area);
  } else if (text.find_first_of("./") == std::string::npos && !exists(text)) {
    throw Failure(Exit::kUsage, "no area and no file " + inQuotes(text) +
                                    didYouMean(text, areaNames()) +
                                    " ('hearth areas' lists the areas)");
  }
}

std::string databaseFile(unsigned int area) {
  const std::optional<std::string> name = hearth::databaseFile(area);
  if (!name) {
    throw Failure(Exit::kUsage, "the data location is too long: with it, the name of the " +
                                    std::string(API_DATA_DIR[area]) +
                                    " database has more than 255 characters");
  }
  return *name;
}

// A name that is too long for the database is told with the database's own message.
std::string databaseSchemaFile(unsigned int area) {
  static_cast<void>(databaseFile(area));
  return hearth::databaseSchemaFile(area).value_or("");
}

std::vector<std::string> labelsOf(unsigned int area) {
  std::vector<std::string> labels;
  for (unsigned int message = 0; message < messageCount(area); ++message) {
    labels.emplace_back(*messageLabel(area, message));
  }
  return labels;
}

// Tries the labels first, then the number.
unsigned int messageOf(unsigned int area, const std::string& text) {
  if (const std::optional<unsigned int> row = messageRow(area, text); row) {
    return *row;
  }
  constexpr std::size_t kMostDigits = 4;  // so that std::stoul cannot overflow
  if (!text.empty() && text.size() <= kMostDigits &&
      text.find_first_not_of("0123456789") == std::string::npos &&
      std::stoul(text) < messageCount(area)) {
    return static_cast<unsigned int>(std::stoul(text));
  }
  throw Failure(Exit::kUsage, "area " + std::string(API_DATA_DIR[area]) + " has no message " +
                                  inQuotes(text) + didYouMean(text, labelsOf(area)) +
                                  " ('hearth labels " + API_DATA_DIR[area] + "' lists them)");
}

// True for anything that can be reached under the name, a folder included; reading it tells the
// rest.
bool exists(const std::string& file) {
  struct stat status;
  return stat(file.c_str(), &status) == 0;
}

mode_t modeOf(const std::string& file) {
  struct stat status;
  return stat(file.c_str(), &status) == 0 ? status.st_mode & 0777U : 0;
}

}  // namespace hearth::tool
