// The names of areas and messages come from the library's own tables, so the command can never know
// others than the backend. A word that no table has ends the command with the nearest one that
// does.
#include "tools/document/area.h"

#include <sys/stat.h>

#include <algorithm>
#include <iterator>

#include "hearth/labels.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// COMM_LABEL tells no count; past the end of an area's table it answers this.
constexpr char kNoLabel[] = "unknown";

}  // namespace

std::vector<std::string> areaNames() {
  return {std::begin(API_DATA_DIR), std::end(API_DATA_DIR)};
}

bool findArea(const std::string& name, unsigned int& area) {
  const auto* const found = std::find(std::begin(API_DATA_DIR), std::end(API_DATA_DIR), name);
  area = static_cast<unsigned int>(found - std::begin(API_DATA_DIR));
  return found != std::end(API_DATA_DIR);
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
  const char* const name = LocalDbCtrl::getFileName(area);
  if (name == nullptr) {
    throw Failure(Exit::kUsage, "the data location is too long: with it, the name of the " +
                                    std::string(API_DATA_DIR[area]) +
                                    " database has more than 255 characters");
  }
  return name;
}

// wifi.ldb has its schema beside it, in wifi_SCHEMA.ldb.
std::string databaseSchemaFile(unsigned int area) {
  const std::string file = databaseFile(area);
  return file.substr(0, file.rfind('.')) + "_SCHEMA.ldb";
}

std::vector<std::string> labelsOf(unsigned int area) {
  std::vector<std::string> labels;
  for (unsigned int message = 0; COMM_LABEL(area, message) != std::string(kNoLabel); ++message) {
    labels.emplace_back(COMM_LABEL(area, message));
  }
  return labels;
}

// Tries the labels first, then the number.
unsigned int messageOf(unsigned int area, const std::string& text) {
  const std::vector<std::string> labels = labelsOf(area);
  const auto found = std::find(labels.begin(), labels.end(), text);
  if (found != labels.end()) {
    return static_cast<unsigned int>(found - labels.begin());
  }
  constexpr std::size_t kMostDigits = 4;  // so that std::stoul cannot overflow
  if (!text.empty() && text.size() <= kMostDigits &&
      text.find_first_not_of("0123456789") == std::string::npos &&
      std::stoul(text) < labels.size()) {
    return static_cast<unsigned int>(std::stoul(text));
  }
  throw Failure(Exit::kUsage, "area " + std::string(API_DATA_DIR[area]) + " has no message " +
                                  inQuotes(text) + didYouMean(text, labels) + " ('hearth labels " +
                                  API_DATA_DIR[area] + "' lists them)");
}

// True for anything that can be reached under the name, a folder included; reading it tells the
// rest.
bool exists(const std::string& file) {
  struct stat status;
  return stat(file.c_str(), &status) == 0;
}

}  // namespace hearth::tool
