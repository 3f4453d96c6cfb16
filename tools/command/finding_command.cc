// find: the paths at which a value stands, in one document or in all areas.
//
// The document is walked, and each member or element is asked what the command line asks for: its
// place, its name, its value. Texts are compared as they are or without regard to case; other
// values of one type are compared as the library compares them.
#include <optional>

#include "tools/command/arguments.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/edit.h"
#include "tools/document/loaded_file.h"
#include "tools/document/places.h"
#include "tools/document/value.h"
#include "tools/terminal/characters.h"
#include "tools/terminal/report.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct FindOptions {
  std::string areaOrFile, key;
  ValueOptions value;
  std::optional<std::string> name, part;  // --key and --contains
  bool ignoreCase = false;
  bool json = false;
};

// What a member must have to be found.
class Search {
 public:
  explicit Search(const FindOptions& options);

  // The places at which to look: all values, or those of a KEY with [*].
  void look(const LoadedFile& document, const std::string& name, const Visit& found) const;

 private:
  bool isFound(const Path& path, json_object* value) const;
  bool isNamed(const Path& path) const;
  std::string text(std::string_view given) const {
    return ignoresCase_ ? folded(given) : std::string(given);
  }

  const bool ignoresCase_;
  std::optional<std::string> key_;
  std::optional<PathPattern> pattern_;
  std::optional<std::string> part_;
  Handle value_;  // null where any value will do
};

// KEY is the older way to say --key, and has VALUE behind it.
Search::Search(const FindOptions& options) : ignoresCase_(options.ignoreCase) {
  if (!options.key.empty() && options.name) {
    throw Failure(Exit::kUsage, "KEY stands twice: as a word and behind --key");
  }
  if (options.value.text && options.part) {
    throw Failure(Exit::kUsage, "VALUE and --contains do not go together");
  }
  if (options.key.find("[*]") != std::string::npos) {
    pattern_.emplace(options.key);
  } else if (!options.key.empty() || options.name) {
    key_ = text(options.name.value_or(options.key));
  }
  if (options.part) {
    part_ = text(*options.part);
  }
  if (options.value.text) {
    value_ = GivenValue(options.value).make(nullptr);
    if (value_->jobj == nullptr) {
      throw Failure(Exit::kUsage, "null cannot be searched for");
    }
  }
  if (value_ == nullptr && !part_ && !options.name) {
    throw Failure(Exit::kUsage, "find takes AREA KEY VALUE, or --key or --contains");
  }
}

bool Search::isNamed(const Path& path) const {
  return !key_ ||
         (!path.isRoot() && !path.steps.back().isIndex && text(path.steps.back().name) == *key_);
}

// Part of a text is looked for in scalars, as `get` prints them.
bool Search::isFound(const Path& path, json_object* value) const {
  if (!isNamed(path)) {
    return false;
  }
  if (part_) {
    return value != nullptr && json_object_is_type(value, json_type_object) == 0 &&
           json_object_is_type(value, json_type_array) == 0 &&
           text(printed(value)).find(*part_) != std::string::npos;
  }
  if (value_ == nullptr) {
    return true;
  }
  const bool areTexts = json_object_is_type(value, json_type_string) != 0 &&
                        json_object_is_type(value_->jobj, json_type_string) != 0;
  return areTexts ? text(printed(value)) == text(printed(value_->jobj))
                  : json_object_equal(value, value_->jobj) != 0;
}

void Search::look(const LoadedFile& document, const std::string& name, const Visit& found) const {
  const auto visit = [&](const Path& path, json_object* value) {
    if (isFound(path, value)) {
      found(path, value);
    }
  };
  if (!pattern_) {
    walk(document.root(), visit);
    return;
  }
  for (const Path& path : placesIn(document, name, *pattern_)) {
    visit(path, document.locate(path).value);
  }
}

// Gathers what is found in one document or several.
class Findings {
 public:
  Findings(Context& context, const FindOptions& options, bool showsArea)
      : context_(context),
        search_(options),
        showsArea_(showsArea),
        isJson_(options.json),
        report_(showsArea ? std::vector<std::string>{"area", "path", "pointer"}
                          : std::vector<std::string>{"path", "pointer"}) {}

  void lookIn(const std::string& areaOrFile);
  void print();

 private:
  void add(const std::string& areaOrFile, const Path& path);

  Context& context_;
  const Search search_;
  const bool showsArea_, isJson_;
  bool hasPointers_ = false;  // among the paths
  Report report_;
};

void Findings::add(const std::string& areaOrFile, const Path& path) {
  hasPointers_ = hasPointers_ || !path.isAddressable();
  std::vector<Cell> row = {path.isAddressable() ? Cell(path.text()) : Cell(), path.pointer()};
  if (showsArea_) {
    row.insert(row.begin(), areaOrFile);
  }
  report_.add(std::move(row));
  if (!isJson_) {
    context_.out.line((showsArea_ ? areaOrFile + " " : "") +
                      context_.out.foreign(path.textOrPointer()));
  }
}

void Findings::lookIn(const std::string& areaOrFile) {
  const LoadedFile document{AreaOrFile(areaOrFile)};
  search_.look(document, areaOrFile,
               [&](const Path& path, json_object*) { add(areaOrFile, path); });
}

// Finding nothing is no message; the exit code tells it.
void Findings::print() {
  if (isJson_) {
    report_.print(context_.out, true);
  }
  if (hasPointers_) {
    Context::note("where a name holds a dot no path leads; a JSON pointer stands in its place");
  }
  if (report_.isEmpty() && context_.exit == Exit::kDone) {
    context_.exit = Exit::kNo;
  }
}

// An area without a database has nothing to find. One that cannot be read does not end the search,
// but the answer is not whole then, and the exit code says so.
void findEverywhere(Context& context, Findings& findings) {
  for (const std::string& area : areaNames()) {
    if (!exists(AreaOrFile(area).file)) {
      continue;
    }
    try {
      findings.lookIn(area);
    } catch (const Failure& failure) {
      if (failure.exit() != Exit::kIo) {
        continue;  // this area has no such place
      }
      Context::note(std::string(failure.what()) + "; not searched");
      context.exit = Exit::kIo;
    }
  }
}

void findValues(Context& context, const FindOptions& options) {
  Findings findings(context, options, options.areaOrFile.empty());
  if (options.areaOrFile.empty()) {
    findEverywhere(context, findings);
  } else {
    findings.lookIn(options.areaOrFile);
  }
  findings.print();
}

}  // namespace

void addFindingCommand(CLI::App& app, Context& context) {
  const auto finding = addCommand<FindOptions>(
      app, context, "find",
      "Print the paths at which a value stands\n\n"
      "KEY is the name of a member, or a path with [*]. Integers and doubles are different types:\n"
      "5 does not find 5.0. Without AREA, all areas are searched, and each path has its area in\n"
      "front. --ignore-case knows Latin, Greek, Cyrillic and Armenian letters.",
      "  hearth find wifi ssid 'Garden Path'\n"
      "  hearth find --contains garden --ignore-case\n"
      "  hearth find --key enabled wifi\n"
      "  hearth find --string network vlan 10\n"
      "  hearth find wifi 'radios.[*].networks.[*].enabled' false\n"
      "  hearth find wifi enabled false | while read -r p; do hearth set wifi \"$p\" true; done",
      findValues);
  finding.app->add_option("AREA|FILE", finding.options.areaOrFile,
                          "an area, or a JSON file; all areas without it");
  finding.app->add_option("KEY", finding.options.key, "the name of the member");
  addValueOptions(*finding.app, finding.options.value, ValueUse::kSought);
  finding.app->add_option("--key", finding.options.name, "the name of the member, without VALUE")
      ->type_name("KEY");
  finding.app->add_option("--contains", finding.options.part, "a part of the value's text")
      ->type_name("TEXT");
  finding.app->add_flag("--ignore-case", finding.options.ignoreCase,
                        "great and small letters are the same");
  finding.app->add_flag("--json", finding.options.json, "print JSON: paths and JSON pointers");
}

}  // namespace hearth::tool
