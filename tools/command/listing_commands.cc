// find, show, areas and labels: the commands that list what there is.
//
// Finding is the library's; it answers objects, not paths. So the document is walked once more, and
// each object among the answers gives the path of its member, in the document's order.
#include <list>
#include <set>

#include "base/json_ref.h"
#include "hearth/local_db_ctrl.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/loaded_file.h"
#include "tools/document/value.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/report.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct FindOptions {
  std::string areaOrFile, key;
  ValueOptions value;
  bool json = false;
};

// One struct for show, areas and labels; each uses what its command line has.
struct ListOptions {
  std::string name;
  bool json = false;
  bool compact = false;
};

// The objects whose member `key` equals the probe. The library compares integers as 32-bit numbers,
// so each of its findings is compared once more, exactly.
std::set<json_object*> objectsWith(const LoadedFile& document, const std::string& key,
                                   json_object* probe) {
  std::list<TreeMapObject*> handles;
  document.handle().findInObject(handles, key.c_str(), probe, document.root());
  document.handle().findInArray(handles, key.c_str(), probe, document.root());
  std::set<json_object*> objects;
  for (TreeMapObject* const handle : handles) {
    if (json_object_equal(memberOf(handle->jobj, key.c_str()), probe) != 0) {
      objects.insert(handle->jobj);
    }
    delete handle;  // the object stays in the document
  }
  return objects;
}

// Prints one path for each member found, or a row for a report in JSON. Finding
// nothing is no message; the exit code tells it.
void findValue(Context& context, const FindOptions& options) {
  const Handle probe = GivenValue(options.value).make(nullptr);
  const LoadedFile document{AreaOrFile(options.areaOrFile)};
  if (probe->jobj == nullptr) {
    throw Failure(Exit::kUsage, "null cannot be searched for");
  }
  const std::set<json_object*> objects = objectsWith(document, options.key, probe->jobj);
  Report report({"path", "pointer"});
  bool hasPointers = false;  // among the paths
  walk(document.root(), [&](const Path& path, json_object* value) {
    if (objects.count(value) == 0) {
      return;
    }
    const Path member = path / Step(options.key);
    hasPointers = hasPointers || !member.isAddressable();
    if (options.json) {
      report.add({member.isAddressable() ? Cell(member.text()) : Cell(), member.pointer()});
    } else {
      context.out.line(context.out.foreign(member.textOrPointer()));
    }
  });
  if (options.json) {
    report.print(context.out, true);
  }
  if (hasPointers) {
    Context::note("where a name holds a dot no path leads; a JSON pointer stands in its place");
  }
  if (objects.empty()) {
    context.exit = Exit::kNo;
  }
}

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
  const auto finding = addCommand<FindOptions>(
      app, context, "find",
      "Print the paths of all members with this name, value and type\n\n"
      "Integers and doubles are different types: 5 does not find 5.0.",
      "  hearth find wifi ssid 'Garden Path'\n"
      "  hearth find --string network vlan 10\n"
      "  hearth find wifi enabled false | while read -r p; do hearth set wifi \"$p\" true; done",
      findValue);
  finding.app->add_option("AREA|FILE", finding.options.areaOrFile, "an area, or a JSON file")
      ->required();
  finding.app->add_option("KEY", finding.options.key, "the name of the member")->required();
  addValueOptions(*finding.app, finding.options.value, ValueUse::kSought);
  finding.app->add_flag("--json", finding.options.json, "print JSON: paths and JSON pointers");

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
