// ls and describe: what is there, and what may be there.
//
// ls goes by the document, describe by the schema of the area's database. A description is a list
// of facts; the tables below say which keywords of the schema make which fact. Several schemas may
// speak about one place, by references and combinations: each of them adds its rules.
#include <algorithm>

#include "hearth/kit/render.h"
#include "hearth/kit/secrets.h"
#include "hearth/kit/write.h"
#include "tools/command/arguments.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/input.h"
#include "tools/document/loaded_file.h"
#include "tools/document/places.h"
#include "tools/document/schema_facts.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/report.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct LookOptions {
  std::string areaOrFile, path;
  bool json = false;
};

struct DescribeOptions {
  std::string area, path;
  bool json = false;
};

// The type without its article, and how many members or elements there are.
std::vector<Cell> rowOf(const std::string& name, View value) {
  const std::string type = typeName(value.raw());
  const std::string word = type.substr(type.find(' ') + 1);
  Cell length;
  if (value.isObject() || value.isArray()) {
    length = static_cast<int64_t>(members(value).size() + elements(value).size());
  }
  return {name, Cell(word), length};
}

// A row for each member or element; of a scalar, one for itself.
void ls(Context& context, const LookOptions& options) {
  const Path path(options.path);
  const LoadedFile document{AreaOrFile(options.areaOrFile)};
  const View value(document.locate(path).value);
  Report report({"name", "type", "length"});
  for (const Member& member : members(value)) {
    report.add(rowOf(std::string(member.name), member.value));
  }
  std::size_t index = 0;
  for (const View element : elements(value)) {
    report.add(rowOf(Step(index++).name, element));
  }
  if (!value.isObject() && !value.isArray()) {
    report.add(rowOf(path.steps.empty() ? "" : path.steps.back().name, value));
  }
  report.print(context.out, options.json);
}

// "1 to 32", "at least 1", "more than 0, at most 10"; empty when there is no limit.
std::string limits(View least, View above, View most, View below) {
  if (least && most) {
    return toText(least) + " to " + toText(most);
  }
  const std::string low = least   ? "at least " + toText(least)
                          : above ? "more than " + toText(above)
                                  : "";
  const std::string high = most    ? "at most " + toText(most)
                           : below ? "less than " + toText(below)
                                   : "";
  return low + (low.empty() || high.empty() ? "" : ", ") + high;
}

// The four keywords of a range, empty where there is none, and what it counts.
struct LimitRow {
  const char* fact;
  const char *least, *above, *most, *below;
  const char* unit;
};
constexpr LimitRow kLimits[] = {
    {"range", "minimum", "exclusiveMinimum", "maximum", "exclusiveMaximum", ""},
    {"length", "minLength", "", "maxLength", "", " characters"},
    {"how many elements", "minItems", "", "maxItems", "", ""},
    {"how many members", "minProperties", "", "maxProperties", "", ""},
};

// Facts that are the value of one keyword, before and behind the others. A rule holds wherever it
// stands; of words about the place, the nearest count.
struct PlainRow {
  const char* fact;
  const char* keyword;
};
constexpr PlainRow kBefore[] = {{"title", "title"}, {"description", "description"}};
constexpr PlainRow kRules[] = {
    {"type", "type"},       {"multiple of", "multipleOf"}, {"format", "format"},
    {"pattern", "pattern"}, {"must be", "const"},          {"unique", "uniqueItems"},
};
constexpr PlainRow kBehind[] = {
    {"unit", "unit"}, {"hint", "hint"}, {"default", "default"}, {"read only", "readOnly"}};

// A title or the like as it is, a default as JSON, so that "" can be seen; types side by side.
std::string wordOf(View value, const std::string& keyword) {
  if (keyword == "default" || keyword == "const") {
    return toText(value);
  }
  std::string text = value.isArray() ? "" : printed(value.raw());
  for (const View element : elements(value)) {
    text += (text.empty() ? "" : " or ") + printed(element.raw());
  }
  return text;
}

// Collects the facts about one place, as rows for people and as an object for programs. The object
// has the keywords that must hold as the schema has them.
class Description {
 public:
  Description(const SchemaPlace& place, const std::string& path)
      : place_(place), report_({"path", path}), object_(newObject()) {
    static_cast<void>(set(object_, "path", path));
  }

  void addAll(bool isSecret);
  const Report& report() const { return report_; }
  View object() const { return object_; }

 private:
  void addWord(const PlainRow& row);
  void addRules(const Saying& saying);
  void addChoices(const Saying& saying);
  void addNames();
  void addSwitch(const char* name, bool isOn);
  void add(const Saying& saying, const char* fact, const std::string& text);
  View take(const Saying& saying, const char* keyword);

  const SchemaPlace& place_;
  Report report_;
  Value object_;
  std::vector<std::string> told_;  // the rules so far
};

// Adds a fact once. That of an alternative is marked, for it does not always hold.
void Description::add(const Saying& saying, const char* fact, const std::string& text) {
  const std::string mark = saying.isAlternative ? "in some cases: " : "";
  const std::string whole = fact + mark + text;
  if (!text.empty() && std::count(told_.begin(), told_.end(), whole) == 0) {
    told_.push_back(whole);
    report_.add({fact, mark + text});
  }
}

// The nearest value of a keyword stays in the object.
View Description::take(const Saying& saying, const char* keyword) {
  const View value = *keyword == '\0' ? View() : saying.keyword(keyword);
  if (value && !saying.isAlternative &&
      json_object_object_get_ex(object_.raw(), keyword, nullptr) == 0) {
    json_object_object_add(object_.raw(), keyword, json_object_get(value.raw()));
  }
  return value;
}

void Description::addWord(const PlainRow& row) {
  const View value = place_.first(row.keyword);
  if (value) {
    json_object_object_add(object_.raw(), row.keyword, json_object_get(value.raw()));
    report_.add({row.fact, wordOf(value, row.keyword)});
  }
}

void Description::addRules(const Saying& saying) {
  for (const PlainRow& row : kRules) {
    const View value = take(saying, row.keyword);
    add(saying, row.fact, value ? wordOf(value, row.keyword) : "");
  }
  for (const LimitRow& row : kLimits) {
    const View least = take(saying, row.least);
    const View above = take(saying, row.above);
    const View most = take(saying, row.most);
    const View below = take(saying, row.below);
    const std::string text = limits(least, above, most, below);
    add(saying, row.fact, text.empty() ? "" : text + row.unit);
  }
  addChoices(saying);
}

// All choices on one line; where they have labels, each with its own.
void Description::addChoices(const Saying& saying) {
  const View labels = saying.keyword("labels");
  std::string text;
  for (const View choice : elements(take(saying, "enum"))) {
    json_object* label = nullptr;
    json_object_object_get_ex(labels.isObject() ? labels.raw() : nullptr,
                              printed(choice.raw()).c_str(), &label);
    text += (text.empty() ? "" : ", ") + toText(choice);
    if (label != nullptr) {
      text += " (" + printed(label) + ")";
    }
  }
  add(saying, "choices", text);
}

void Description::addNames() {
  const std::vector<std::string> names = place_.names();
  if (names.empty()) {
    return;
  }
  Value array = newArray();
  std::string text;
  for (const std::string& name : names) {
    static_cast<void>(append(array, name));
    text += (text.empty() ? "" : ", ") + name;
  }
  static_cast<void>(set(object_, "members", std::move(array)));
  report_.add({"members", text});
}

void Description::addSwitch(const char* name, bool isOn) {
  static_cast<void>(set(object_, name, isOn));
  report_.add({name, isOn ? "yes" : "no"});
}

void Description::addAll(bool isSecret) {
  for (const PlainRow& row : kBefore) {
    addWord(row);
  }
  for (const Saying& saying : place_.sayings()) {
    addRules(saying);
  }
  for (const PlainRow& row : kBehind) {
    addWord(row);
  }
  addNames();
  addSwitch("required", place_.isRequired());
  addSwitch("secret", isSecret);
}

// The place in the schema. Throws a Failure for a path that no document can have.
SchemaPlace placeOf(View schema, const Path& path) {
  SchemaPlace place(schema);
  for (std::size_t i = 0; i < path.steps.size(); ++i) {
    const SchemaPlace below = place.below(path.steps[i]);
    if (below.isClosed() && !below.isKnown()) {
      throw Failure(Exit::kNo, path.head(i).shown() + " may have no member " +
                                   inQuotes(path.steps[i].name) +
                                   didYouMean(path.steps[i].name, place.names()));
    }
    place = below;
  }
  return place;
}

// An element is described by any index, so [*] is taken for [0].
void describe(Context& context, const DescribeOptions& options) {
  const Path path = PathPattern(options.path).first();
  const unsigned int area = areaOf(options.area);
  const std::string file = databaseSchemaFile(area);
  if (!exists(file)) {
    throw Failure(Exit::kNo, "area " + options.area + " has no schema of its database (" +
                                 inQuotes(file) + "): anything may stand there");
  }
  const Handle schema = readJson(file);
  const SchemaPlace place = placeOf(View(schema->jobj), path);
  if (!place.isKnown()) {
    throw Failure(Exit::kNo, "the schema says nothing about " + inQuotes(options.path) +
                                 ": anything may stand there");
  }
  const View hidden = place.first("writeOnly");
  const bool isSecret = json_object_get_boolean(hidden.raw()) != 0 || leadsToSecret(path.text());
  Description description(place, options.path);
  description.addAll(isSecret);
  if (options.json) {
    context.out.line(jsonText(description.object().raw(), context.out));
  } else {
    description.report().print(context.out, false);
  }
}

}  // namespace

void addDescribingCommands(CLI::App& app, Context& context) {
  const auto looking = addCommand<LookOptions>(
      app, context, "ls", "List the members or elements at a path: name, type, length",
      "  hearth ls wifi\n  hearth ls wifi 'radios.[0]'", ls);
  looking.app->add_option("AREA|FILE", looking.options.areaOrFile, kAreaOrFileHelp)->required();
  looking.app->add_option("PATH", looking.options.path, "the whole document without it");
  looking.app->add_flag("--json", looking.options.json, "print JSON");

  const auto describing = addCommand<DescribeOptions>(
      app, context, "describe",
      "Say what may stand at a path\n\n"
      "Goes by the schema of the area's database, so no value need be there yet.",
      "  hearth describe wifi 'radios.[*].channel'\n"
      "  hearth describe wifi 'radios.[*].networks.[*].security.mode'",
      describe);
  describing.app->add_option("AREA", describing.options.area, "an area")->required();
  describing.app->add_option("PATH", describing.options.path, kManyPathHelp)->required();
  describing.app->add_flag("--json", describing.options.json, "print JSON");
}

}  // namespace hearth::tool
