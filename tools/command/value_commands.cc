// get, set, del and add: the commands that work on one value of a document.
//
// All edits go the same way: check what the command line alone can tell, lock the folder, load the
// document, change it in memory, save. Nothing is written before the last step, so a failure on the
// way leaves the file as it was.
#include <algorithm>

#include "hearth/json_data.h"
#include "tools/command/command.h"
#include "tools/document/folder_lock.h"
#include "tools/document/loaded_file.h"
#include "tools/document/path.h"
#include "tools/document/value.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

constexpr char kAreaOrFileHelp[] = "an area (hearth areas), or a JSON file";
constexpr char kPathHelp[] = "names and indexes joined by dots: 'radios.[0].channel'";

struct GetOptions {
  std::string areaOrFile, path;
  bool json = false;
};

struct EditOptions {
  std::string areaOrFile, path;
  ValueOptions value;
  SaveOptions save;
};

// Prints a text as it is, without quotes, so that a shell variable gets the text itself; any other
// value, and with --json a text too, as JSON.
void get(Context& context, const GetOptions& options) {
  const Path path(options.path);
  const LoadedFile document{AreaOrFile(options.areaOrFile)};
  json_object* const value = document.locate(path).value;
  if (!options.json && json_object_is_type(value, json_type_string) != 0) {
    const auto size = static_cast<std::size_t>(json_object_get_string_len(value));
    context.out.line(context.out.foreign({json_object_get_string(value), size}));
  } else {
    context.out.line(jsonText(value, context.out));
  }
}

// A document is nested at most 32 levels deep, so no longer path leads anywhere.
void refuseDeepPath(const Path& path) {
  constexpr std::size_t kDeepest = 32;
  if (path.steps.size() > kDeepest) {
    throw Failure(Exit::kUsage, "the path has " + std::to_string(path.steps.size()) +
                                    " steps; a document is nested at most 32 levels deep");
  }
}

// The library would append a member to an array as a new object; at a keyboard that is a mistake.
// Only the root needs this look: further down, the library refuses by itself.
void refuseMemberOfArray(const LoadedFile& document, const Path& path) {
  if (json_object_is_type(document.root(), json_type_array) != 0 && !path.steps[0].isIndex) {
    document.explainMissing(path);
  }
}

// The path at which a store puts a value. An index past the end of its array appends, so it becomes
// the array's length; in an array that the store is yet to make, that is 0.
Path whereStored(json_object* root, const Path& path) {
  Path result;
  for (Step step : path.steps) {
    PathEnd end{};
    const bool isThere = find(root, result, end);  // false from the first step that the store makes
    if (step.isIndex) {
      const bool isArray = isThere && json_object_is_type(end.value, json_type_array) != 0;
      const std::size_t length = isArray ? json_object_array_length(end.value) : 0;
      step = Step(std::min(step.index, length));
    }
    result = result / step;
  }
  return result;
}

// Stores the value, to which the library takes a reference of its own. It refuses only paths that
// it cannot follow, and those can be explained.
void store(const LoadedFile& document, const Path& path, json_object* value) {
  const std::string text = path.text();
  if (JsonData::setJObj(document.root(), text.c_str(), value) != 0) {
    document.explainMissing(path);
  }
}

// The old value decides the type of the new one, and where it goes must be known before the store
// changes the arrays on the way.
void set(Context& /*context*/, const EditOptions& options) {
  const Path path(options.path);
  if (path.isRoot()) {
    throw Failure(Exit::kUsage, "set needs a path; import replaces a whole database");
  }
  refuseDeepPath(path);
  const GivenValue given(options.value);
  const AreaOrFile chosen(options.areaOrFile);
  const FolderLock lock(chosen.file);
  LoadedFile document(chosen);
  refuseMemberOfArray(document, path);
  PathEnd old{};
  static_cast<void>(find(document.root(), path, old));  // where nothing is, old.value stays null
  const Handle value = given.make(old.value);
  const Path stored = whereStored(document.root(), path);
  store(document, path, value->jobj);
  document.save(options.save);
  if (stored.text() != path.text()) {
    Context::note(path.shown() + " is past the end of its array: stored as " + stored.shown());
  }
}

// The library takes a member or element that is null for nothing and would not delete it, so a null
// becomes false first.
void del(Context& /*context*/, const EditOptions& options) {
  const Path path(options.path);
  if (path.isRoot()) {
    throw Failure(Exit::kUsage, "del needs a path; a whole document is not deleted");
  }
  const AreaOrFile chosen(options.areaOrFile);
  const FolderLock lock(chosen.file);
  LoadedFile document(chosen);
  const PathEnd end = document.locate(path);
  const std::string text = path.text();
  if (end.value == nullptr && json_object_is_type(end.container, json_type_object) != 0) {
    document.handle().set(text.c_str(), false);
  } else if (end.value == nullptr) {
    json_object_array_put_idx(end.container, path.steps.back().index, json_object_new_boolean(0));
  }
  document.handle().del(text.c_str());
  document.save(options.save);
}

// Appending is storing at the index behind the last element, which must be an array's.
void add(Context& context, const EditOptions& options) {
  const Path path(options.path);
  refuseDeepPath(path);
  const GivenValue given(options.value);
  const AreaOrFile chosen(options.areaOrFile);
  const FolderLock lock(chosen.file);
  LoadedFile document(chosen);
  json_object* const array = document.locate(path).value;
  if (json_object_is_type(array, json_type_array) == 0) {
    throw Failure(Exit::kNo, inQuotes(chosen.name) + ": " + path.shown() + " is " +
                                 described(array) + "; add appends to arrays");
  }
  const Path element = path / Step(json_object_array_length(array));
  const Handle value = given.make(nullptr);
  store(document, element, value->jobj);
  document.save(options.save);
  context.out.line(context.out.foreign(element.text()));
}

void addSaveOptions(CLI::App& command, SaveOptions& options) {
  command.add_flag("--force", options.force,
                   "save although the file has changed meanwhile, or holds more than plain JSON");
  command.add_flag("--no-schema", options.noSchema,
                   "save although the result does not conform to AREA_SCHEMA.ldb");
}

template <typename Options>
void addPathArguments(const Command<Options>& command) {
  command.app->add_option("AREA|FILE", command.options.areaOrFile, kAreaOrFileHelp)->required();
  command.app->add_option("PATH", command.options.path, kPathHelp)->required();
}

void addEditArguments(const Command<EditOptions>& command) {
  addPathArguments(command);
  addValueOptions(*command.app, command.options.value, ValueUse::kStored);
  addSaveOptions(*command.app, command.options.save);
}

}  // namespace

void addValueCommands(CLI::App& app, Context& context) {
  const auto getting = addCommand<GetOptions>(
      app, context, "get", "Print the value at a path",
      "  hearth get wifi 'radios.[0].channel'\n"
      "  ssid=$(hearth get wifi 'radios.[0].networks.[0].ssid')   texts come without quotes\n"
      "  hearth get --json ./backup.json ''                       '' is the whole document",
      get);
  addPathArguments(getting);
  getting.app->add_flag("--json", getting.options.json, "print texts as JSON too");

  addEditArguments(addCommand<EditOptions>(
      app, context, "set",
      "Store a value at a path, making what is missing on the way\n\n"
      "VALUE gets the type of the value that it replaces. Where nothing is replaced, 11 is an\n"
      "integer, 1.5 a double, true and false booleans, null is null, anything else a text.\n"
      "An index past the end of an array appends.",
      "  hearth set wifi 'radios.[0].channel' 11\n"
      "  hearth set wifi 'radios.[0].networks.[0].security.passphrase' 12345678   stays a text\n"
      "  hearth set --json service 'ddns.hosts' '[\"a.example\"]'",
      set));

  const auto deleting = addCommand<EditOptions>(
      app, context, "del", "Remove the member or element at a path; later elements move up",
      "  hearth del wifi 'radios.[0].networks.[2]'", del);
  addPathArguments(deleting);
  addSaveOptions(*deleting.app, deleting.options.save);

  addEditArguments(addCommand<EditOptions>(
      app, context, "add", "Append a value to the array at a path, and print its path",
      "  hearth add wifi bandSteering.exceptions 02:00:5E:10:00:77\n"
      "  hearth add wifi 'radios.[0].networks.[0].accessControl.rules' --from rule.json",
      add));
}

}  // namespace hearth::tool
