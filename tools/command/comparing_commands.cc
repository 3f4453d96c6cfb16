// diff: the command that compares two stores, or two documents, path by path.
//
// What stands on the command line may be a data location, a backup, an area or any JSON file. Two
// stores are compared area by area, two documents as they are.
#include <sys/stat.h>

#include <map>
#include <optional>

#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/input.h"
#include "tools/document/snapshot.h"
#include "tools/store/differences.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct DiffOptions {
  std::string was, is;
  bool json = false;
};

// What one word of the command line stands for: databases by area, or one document alone.
struct Side {
  bool isStore = false;
  std::map<std::string, Handle> documents;  // a lone document has the name ""
};

bool isFolder(const std::string& name) {
  struct stat status {};
  return stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

Side sideOf(const std::string& name) {
  Side side;
  Snapshot snapshot;
  if (isFolder(name)) {
    side.isStore = true;
    snapshot = readStore(name, [](unsigned int) {});
    if (snapshot.empty()) {
      throw Failure(Exit::kIo, inQuotes(name) + ": holds no database of any area");
    }
  } else {
    Handle document = readJson(name == "-" ? name : AreaOrFile(name).file);
    side.isStore = isSnapshot(document->jobj, "backup");
    if (!side.isStore) {
      side.documents.emplace("", std::move(document));
      return side;
    }
    snapshot = readSnapshot(document->jobj, "backup", inQuotes(name));
  }
  for (StoredDatabase& database : snapshot) {
    side.documents.emplace(API_DATA_DIR[database.area], std::move(database.document));
  }
  return side;
}

json_object* rootOf(const Side& side, const std::string& area) {
  const auto found = side.documents.find(area);
  return found == side.documents.end() ? nullptr : found->second->jobj;
}

// All differences of all areas; an area that only one side has is one difference.
void diff(Context& context, const DiffOptions& options) {
  const Side was = sideOf(options.was);
  const Side is = sideOf(options.is);
  if (was.isStore != is.isStore) {
    throw Failure(Exit::kUsage, inQuotes(was.isStore ? options.is : options.was) +
                                    " is one document, and the other is a whole store");
  }
  std::vector<std::string> areas = was.isStore ? areaNames() : std::vector<std::string>{""};
  TreeMapObject array(true);
  for (const std::string& area : areas) {
    json_object* const old = rootOf(was, area);
    json_object* const made = rootOf(is, area);
    std::vector<Difference> differences = differencesOf(old, made);
    if (old == nullptr && made != nullptr) {
      differences[0].kind = Difference::Kind::kAdded;
    } else if (old != nullptr && made == nullptr) {
      differences[0].kind = Difference::Kind::kRemoved;
    }
    for (const Difference& difference : differences) {
      context.exit = Exit::kNo;
      if (options.json) {
        json_object_array_add(array.jobj, json_object_get(objectOf(difference, area)->jobj));
      } else {
        context.out.line(lineOf(difference, area, context.out));
      }
    }
  }
  if (options.json) {
    context.out.line(jsonText(array.jobj, context.out));
  }
}

}  // namespace

void addComparingCommands(CLI::App& app, Context& context) {
  const auto comparing = addCommand<DiffOptions>(
      app, context, "diff",
      "Compare two stores or documents, path by path\n\n"
      "OLD and NEW are data locations, backups, areas or JSON files. Exit code 1 says that they\n"
      "differ. Of secrets only that they differ is shown.",
      "  hearth diff data /mnt/other/data\n  hearth diff backup.json data\n"
      "  hearth diff wifi ./old-wifi.json",
      diff);
  comparing.app->add_option("OLD", comparing.options.was, "a store, an area or a file")->required();
  comparing.app->add_option("NEW", comparing.options.is, "another, - for standard input")
      ->required();
  comparing.app->add_flag("--json", comparing.options.json, "print the differences as JSON");
}

}  // namespace hearth::tool
