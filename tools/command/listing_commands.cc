// show, areas and labels: the commands that list what there is.
#include "hearth/local_db_ctrl.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/loaded_file.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/report.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// One struct for show, areas and labels; each uses what its command line has.
struct ListOptions {
  std::string name;
  bool json = false;
  bool compact = false;
};

// Prints the document as it was loaded, with its members in their order.
void show(Context& context, const ListOptions& options) {
  const LoadedFile document{AreaOrFile(options.name)};
  context.out.line(jsonText(document.root(), context.out,
                            options.compact ? Layout::kOneLine : Layout::kIndented));
}

// How many values the document holds that are neither object nor array.
int64_t countScalars(json_object* root) {
  int64_t count = 0;
  walk(root, [&](const Path&, json_object* value) {
    const json_type type = json_object_get_type(value);
    count += type != json_type_object && type != json_type_array ? 1 : 0;
  });
  return count;
}

// One area's row. An area that cannot be loaded has its trouble for a state and does not end the
// list.
std::vector<Cell> areaRow(const std::string& name) {
  const AreaOrFile chosen(name);
  if (!exists(chosen.file)) {
    return {name, chosen.file, Cell(), Cell("missing", Ink::kBad), Cell()};
  }
  try {
    const LoadedFile document(chosen);
    return {name, chosen.file, static_cast<int64_t>(document.text().size()), Cell("ok", Ink::kGood),
            countScalars(document.root())};
  } catch (const Failure& failure) {
    return {name, chosen.file, Cell(), Cell(failure.what(), Ink::kBad), Cell()};
  }
}

// Loads every area, to tell whether it can be.
void areas(Context& context, const ListOptions& options) {
  Report report({"area", "file", "bytes", "state", "values"});
  for (const std::string& name : areaNames()) {
    report.add(areaRow(name));
  }
  report.print(context.out, options.json);
}

// One row for each message of the area.
void addLabels(Report& report, unsigned int area) {
  int64_t message = 0;
  for (const std::string& label : labelsOf(area)) {
    const auto index = static_cast<unsigned int>(message);
    // A name too long for the library is null: then there is no such file either. Both names stand
    // in a buffer of their own operation, so the second does not overwrite the first.
    const char* const file = LocalDbCtrl::getFileName(area, index);
    const bool hasFile = file != nullptr && exists(file);
    const char* const schema = LocalDbCtrl::getSchemaFile(area, index);
    report.add(
        {API_DATA_DIR[area], message++, label, hasFile, schema != nullptr && exists(schema)});
  }
}

// The messages of one area, or of all when none is named.
void labels(Context& context, const ListOptions& options) {
  Report report({"area", "message", "label", "document", "schema"});
  for (unsigned int area = 0; area < areaNames().size(); ++area) {
    if (options.name.empty() || area == areaOf(options.name)) {
      addLabels(report, area);
    }
  }
  report.print(context.out, options.json);
}

}  // namespace

void addListingCommands(CLI::App& app, Context& context) {
  const auto showing = addCommand<ListOptions>(
      app, context, "show", "Print the whole document",
      "  hearth show wifi | less\n  hearth show --compact ./backup.json", show);
  showing.app->add_option("AREA|FILE", showing.options.name, "an area, or a JSON file")->required();
  showing.app->add_flag("--compact", showing.options.compact, "on one line, without blanks");

  const auto listing = addCommand<ListOptions>(
      app, context, "areas", "List the areas: file, size, state, number of values",
      "  hearth areas\n  hearth --data /data/gateway areas --json", areas);
  listing.app->add_flag("--json", listing.options.json, "print JSON");

  const auto labelling = addCommand<ListOptions>(
      app, context, "labels", "List messages: index, label, whether it has a document and a schema",
      "  hearth labels wifi", labels);
  labelling.app->add_option("AREA", labelling.options.name, "an area; all areas without it");
  labelling.app->add_flag("--json", labelling.options.json, "print JSON");
}

}  // namespace hearth::tool
