// validate and check: the commands that compare documents with their schemas.
//
// validate takes one document, and either the area and message that choose a schema or the schema
// itself. check walks all areas of the data location: each file must be plain JSON, each document
// conform to the schema beside it, and each schema to the rules of its draft. A problem does not
// end the walk; all of them are reported together.
#include <algorithm>
#include <filesystem>

#include "hearth/be_config.h"
#include "hearth/kit/parse.h"
#include "hearth/kit/write.h"
#include "hearth/local_db_ctrl.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/input.h"
#include "tools/document/replacement.h"
#include "tools/document/schema_check.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/progress.h"
#include "tools/terminal/report.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct ValidateOptions {
  std::string schema;
  // With --schema the only word is the file, which the command line takes for the area.
  std::string area, message, file;
  bool all = false;
  bool json = false;
};

// The schema that a document is checked against: its file, and its name in messages.
struct Rules {
  std::string file;
  std::string name;
};

// Chooses the schema. Throws a Failure when the command line has too few or too many words.
Rules rulesOf(const ValidateOptions& options) {
  const bool isNamed = !options.schema.empty();
  if (options.message.empty() != isNamed || options.file.empty() != isNamed) {
    throw Failure(Exit::kUsage,
                  "validate takes AREA MESSAGE FILE, or --schema FILE FILE; '-' is standard input");
  }
  if (isNamed) {
    return {options.schema, options.schema};
  }
  const unsigned int area = areaOf(options.area);
  const unsigned int message = messageOf(area, options.message);
  const char* const file = LocalDbCtrl::getSchemaFile(area, message);
  if (file == nullptr) {
    throw Failure(Exit::kUsage, "the data location is too long for the name of a schema file");
  }
  return {file, labelsOf(area)[message]};
}

// One violation as JSON.
Value violationOf(const Breach& breach) {
  Value object = newObject();
  static_cast<void>(set(object, "path", breach.path));
  static_cast<void>(set(object, "pointer", breach.rule.place));
  static_cast<void>(set(object, "rule", breach.rule.rule));
  static_cast<void>(set(object, "keyword", breach.rule.keyword));
  static_cast<void>(set(object, "message", breach.rule.sentence));
  if (!breach.choices.empty()) {
    static_cast<void>(set(object, "choices", newArray()));
    const Value choices = Value::sharing(find(object, "choices"));
    for (const std::string& choice : breach.choices) {
      static_cast<void>(append(choices, *hearth::parse(choice)));
    }
  }
  return object;
}

// The verdict as JSON: the members of the first violation beside "conforms", and with --all each
// violation in "violations".
void printVerdict(Context& context, const Verdict& verdict, bool all) {
  const Value object = newObject();
  static_cast<void>(set(object, "conforms", verdict.conforms));
  if (all) {
    static_cast<void>(set(object, "violations", newArray()));
    const Value violations = Value::sharing(find(object, "violations"));
    for (const Breach& breach : verdict.breaches) {
      static_cast<void>(append(violations, violationOf(breach)));
    }
  } else if (!verdict.breaches.empty()) {
    const BrokenRule& rule = verdict.breaches.front().rule;
    static_cast<void>(set(object, "pointer", rule.place));
    static_cast<void>(set(object, "rule", rule.rule));
    static_cast<void>(set(object, "keyword", rule.keyword));
    static_cast<void>(set(object, "message", rule.sentence));
  }
  context.out.line(jsonText(object.raw(), context.out));
}

// A line for each violation, with all choices of an enumeration.
void printViolations(Context& context, const Verdict& verdict) {
  for (const Breach& breach : verdict.breaches) {
    context.out.line(breach.text(true));
  }
}

// A message without a schema passes, but its document must still be JSON.
void validate(Context& context, const ValidateOptions& options) {
  const Rules rules = rulesOf(options);
  const std::string& file = options.schema.empty() ? options.file : options.area;
  const Handle document = readJson(file);
  if (options.schema.empty() && !exists(rules.file)) {
    Context::note(rules.name + " has no schema (" + inQuotes(rules.file) + "): everything passes");
    return;
  }
  const Verdict verdict =
      checkAgainst(*document, rules.file, options.all ? kAllBreaches : kFirstBreach);
  if (options.json) {
    printVerdict(context, verdict, options.all);
  } else if (!verdict.breaches.empty() && options.all) {
    printViolations(context, verdict);
  } else if (!verdict.conforms) {
    throw Failure(Exit::kViolation, (file == "-" ? "standard input" : inQuotes(file)) + " and " +
                                        inQuotes(rules.name) + ": " + verdict.text());
  }
  context.exit = verdict.conforms ? Exit::kDone : Exit::kViolation;
}

// The table of all files is for --json only; a person reads the problems.
struct CheckOptions {
  bool json = false;
};

// Walks over the files that the library may read below a data location, area by area.
class Checker {
 public:
  void checkArea(unsigned int area);
  void checkChange();
  const Report& report() const { return report_; }
  std::size_t files() const { return files_; }
  const std::vector<std::string>& problems() const { return problems_; }

 private:
  static constexpr char kSchemaEnd[] = "_SCHEMA";

  void checkFile(unsigned int area, const std::string& file);
  static std::string findProblem(unsigned int area, const std::string& file);
  static void noteUnknownMessage(unsigned int area, const std::string& file,
                                 const std::string& name);
  void add(unsigned int area, const std::string& file, const std::string& problem);

  Progress progress_{"checking"};
  Report report_{{"area", "file", "problem"}};
  std::size_t files_ = 0;
  std::vector<std::string> problems_;
};

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The database comes first and is checked even where it is missing; then all other .ldb files by
// name. Hidden files are left out: no document has such a name.
void Checker::checkArea(unsigned int area) {
  const std::filesystem::path database = databaseFile(area);
  std::vector<std::string> files = {database.string()};
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(database.parent_path(), error)) {
    const std::filesystem::path& file = entry.path();
    if (file.extension() == ".ldb" && file.filename().string().front() != '.' &&
        file.filename() != database.filename()) {
      files.push_back(file.string());
    }
  }
  std::sort(files.begin() + 1, files.end());
  for (const std::string& file : files) {
    checkFile(area, file);
  }
}

// A change of several areas that nobody has finished yet.
void Checker::checkChange() {
  if (hasInterrupted()) {
    problems_.emplace_back(
        "a change of several areas was interrupted: 'hearth batch --resume' finishes it");
  }
}

// A file that cannot be read or parsed is a problem like any other.
void Checker::checkFile(unsigned int area, const std::string& file) {
  std::string problem;
  progress_.at(file);
  try {
    problem = findProblem(area, file);
  } catch (const Failure& failure) {
    problem = failure.what();
  }
  add(area, file, problem);
}

// Says what is wrong with a file; empty when nothing is. NAME.ldb is a document and
// NAME_SCHEMA.ldb its schema, where NAME is a message or the area itself.
std::string Checker::findProblem(unsigned int area, const std::string& file) {
  const std::string text = readWhole(file);
  const Handle document = parse(text, file);
  const std::string whyNot = whyNotPlainJson(text);
  if (!whyNot.empty()) {
    return inQuotes(file) + ": a save would change it: " + whyNot;
  }
  const std::string stem = std::filesystem::path(file).stem().string();
  const bool isSchema = endsWith(stem, kSchemaEnd);
  const std::string name = isSchema ? stem.substr(0, stem.size() - sizeof(kSchemaEnd) + 1) : stem;
  noteUnknownMessage(area, file, name);
  const std::string rules =
      (std::filesystem::path(file).parent_path() / (name + kSchemaEnd + ".ldb")).string();
  if (!isSchema && !exists(rules)) {
    return "";
  }
  // A schema is compared with its draft, a document with the schema beside it.
  const Verdict verdict = isSchema ? checkSchema(*document) : checkAgainst(*document, rules);
  return verdict.conforms ? "" : inQuotes(file) + ": " + verdict.text();
}

// A file of no message is never read by the backend. It may be there on purpose, or have a typo in
// its name, so it gets a note and is no problem.
void Checker::noteUnknownMessage(unsigned int area, const std::string& file,
                                 const std::string& name) {
  const std::vector<std::string> labels = labelsOf(area);
  if (name != API_DATA_DIR[area] && std::count(labels.begin(), labels.end(), name) == 0) {
    Context::note(inQuotes(file) + " belongs to no message of the area" + didYouMean(name, labels));
  }
}

// Counts the file and reports it, without a problem when that is empty.
void Checker::add(unsigned int area, const std::string& file, const std::string& problem) {
  ++files_;
  report_.add({API_DATA_DIR[area], file, problem.empty() ? Cell() : Cell(problem)});
  if (!problem.empty()) {
    problems_.push_back(problem);
  }
}

// A line for each problem and one for the totals, or all files as JSON.
void check(Context& context, const CheckOptions& options) {
  Checker checker;
  for (unsigned int area = 0; area < areaNames().size(); ++area) {
    checker.checkArea(area);
  }
  checker.checkChange();
  if (options.json) {
    checker.report().print(context.out, true);
  } else {
    for (const std::string& problem : checker.problems()) {
      context.out.line(context.out.inked(Ink::kBad, problem));
    }
    context.out.line(counted(checker.files(), "file") + " below " +
                     inQuotes(BEConfig::DATA_LOCATION) + ", " +
                     counted(checker.problems().size(), "problem"));
  }
  context.exit = checker.problems().empty() ? Exit::kDone : Exit::kNo;
}

}  // namespace

void addCheckingCommands(CLI::App& app, Context& context) {
  const auto validating = addCommand<ValidateOptions>(
      app, context, "validate",
      "Check a message against its schema, or any document against any schema\n\n"
      "MESSAGE is a label or its number (hearth labels AREA). A message without a schema passes.",
      "  hearth validate wifi WIFI_RADIO_CHANGE_REQ request.json\n"
      "  curl -s http://gateway/... | hearth validate wifi WIFI_RADIO_CHANGE_RESP -\n"
      "  hearth validate --all --schema rules.json document.json",
      validate);
  validating.app->add_option("--schema", validating.options.schema, "the schema")
      ->type_name("FILE");
  validating.app
      ->add_option("AREA|FILE", validating.options.area, "the area; with --schema the FILE")
      ->required();
  validating.app->add_option("MESSAGE", validating.options.message, "a label, or its number");
  validating.app->add_option("FILE", validating.options.file, "the document, - for standard input");
  validating.app->add_flag("--all", validating.options.all,
                           "list every violation, with all choices of an enumeration");
  validating.app->add_flag("--json", validating.options.json, "print the result as JSON");

  const auto checking = addCommand<CheckOptions>(
      app, context, "check",
      "Check every database, message and schema below the data location\n\n"
      "Each must parse; documents must conform to their schemas, and schemas to their drafts.\n"
      "The schema of a whole database is AREA_SCHEMA.ldb, where there is one.",
      "  hearth check && echo fine\n  hearth --data /data/gateway check --json", check);
  checking.app->add_flag("--json", checking.options.json, "print every file as JSON");
}

}  // namespace hearth::tool
