// get, set, del and add: the commands that work on one value of a document.
//
// With [*] in its path, get prints every place that the path stands for, and set and del change
// them, all of them or none. All edits go the same way: check what the command line alone can tell,
// lock the folder, load the document, change it in memory, save. Nothing is written before the last
// step, so a failure on the way leaves the file as it was.
#include <optional>

#include "hearth/kit/secrets.h"
#include "tools/command/arguments.h"
#include "tools/command/command.h"
#include "tools/command/value_table.h"
#include "tools/document/edit.h"
#include "tools/document/folder_lock.h"
#include "tools/document/loaded_file.h"
#include "tools/document/path.h"
#include "tools/document/places.h"
#include "tools/document/value.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct GetOptions {
  std::string areaOrFile, path;
  std::vector<std::string> where, columns;
  std::optional<std::string> fallback;
  bool json = false;
  bool table = false;
};

struct EditOptions {
  std::string areaOrFile, path;
  std::vector<std::string> where;
  ValueOptions value;
  std::optional<std::string> expected;  // of set --if
  SaveOptions save;
};

// A text as it is, without quotes, so that a shell variable gets the text itself; any other value,
// and with --json a text too, as JSON.
std::string printable(const Output& out, json_object* value, bool asJson, Layout layout) {
  return !asJson && json_object_is_type(value, json_type_string) != 0
             ? out.foreign(printed(value))
             : jsonText(value, out, layout);
}

// One of several values, on one line: a text that has line feeds gets escapes.
std::string onOneLine(const Output& out, json_object* value) {
  const bool isBroken = json_object_is_type(value, json_type_string) != 0 &&
                        printed(value).find('\n') != std::string::npos;
  return isBroken ? escaped(printed(value), Escapes::kTerminal)
                  : printable(out, value, false, Layout::kOneLine);
}

// The value of --default: the text itself, and with --json what set would store.
Handle fallbackOf(const GetOptions& options) {
  ValueOptions given;
  given.text = options.fallback;
  given.type = options.json ? ValueOptions::kInferred : ValueOptions::kString;
  return GivenValue(given).make(nullptr);
}

// The values at the places, of which those that lead nowhere have the default, if there is one.
Value valuesAt(const LoadedFile& document, const GetOptions& options, const PathPattern& pattern) {
  Value values = newArray();
  const auto add = [&values](json_object* value) {
    json_object_array_add(values.raw(), json_object_get(value));
  };
  if (!options.fallback) {
    for (const Path& path : placesIn(document, options.areaOrFile, pattern)) {
      add(document.locate(path).value);
    }
    return values;
  }
  const Handle fallback = fallbackOf(options);
  for (const Path& path : pattern.expandedIn(document.root())) {
    PathEnd end{};
    add(find(document.root(), path, end) ? end.value : fallback->jobj);
  }
  return values;
}

void get(Context& context, const GetOptions& options) {
  const PathPattern pattern(options.path, options.where);
  const LoadedFile document{AreaOrFile(options.areaOrFile)};
  const Value values = valuesAt(document, options, pattern);
  if (options.table || !options.columns.empty()) {
    tableOf(values, options.columns).print(context.out, false);
  } else if (!pattern.isMany()) {
    context.out.line(
        printable(context.out, elements(values)[0].raw(), options.json, Layout::kIndented));
  } else if (options.json) {
    context.out.line(jsonText(values.raw(), context.out));
  } else {
    for (const View value : elements(values)) {
      context.out.line(onOneLine(context.out, value.raw()));
    }
  }
}

// Throws a Failure when the value is another one than --if says. A secret is not shown.
void refuseUnexpected(const LoadedFile& document, const Path& path, const std::string& expected) {
  json_object* const value = document.locate(path).value;
  if (printed(value) != expected) {
    throw Failure(Exit::kConflict, path.shown() + " is " +
                                       escaped(hearth::shown(View(document.root()), path.text()),
                                               Escapes::kTerminal) +
                                       ", not what --if says; nothing is changed");
  }
}

// From now on the library's and this command's messages do not quote what is stored at the path.
void hideValueAt(const Path& path) {
  for (auto step = path.steps.rbegin(); step != path.steps.rend(); ++step) {
    if (!step->isIndex) {
      addSecretName(step->name);
      return;
    }
  }
}

// With [*], values are replaced wherever there is one; nothing is made.
std::vector<Path> placesToSet(const LoadedFile& document, const EditOptions& options,
                              const PathPattern& pattern) {
  if (pattern.isMany()) {
    return placesIn(document, options.areaOrFile, pattern);
  }
  if (pattern.single().isRoot()) {
    throw Failure(Exit::kUsage, "set needs a path; import replaces a whole database");
  }
  refuseDeepPath(pattern.single());
  return {pattern.single()};
}

// The old value decides the type of the new one.
void set(Context& /*context*/, const EditOptions& options) {
  const PathPattern pattern(options.path, options.where);
  if (!pattern.isMany() && pattern.single().isRoot()) {
    throw Failure(Exit::kUsage, "set needs a path; import replaces a whole database");
  }
  GivenValue given(options.value);
  const AreaOrFile chosen(options.areaOrFile);
  const FolderLock lock(chosen.file);
  LoadedFile document(chosen);
  std::vector<std::pair<Path, Path>> stores;
  for (const Path& path : placesToSet(document, options, pattern)) {
    if (options.expected) {
      refuseUnexpected(document, path, *options.expected);
    }
    if (options.value.isSecret) {
      hideValueAt(path);
    }
    if (leadsToSecret(path.text())) {
      given.hide();
    }
    PathEnd old{};
    static_cast<void>(find(document.root(), path, old));  // where nothing is, it stays null
    stores.emplace_back(path, storeAt(document, path, given.make(old.value)->jobj));
  }
  document.save(options.save);
  for (const auto& [path, stored] : stores) {
    noteAppended(path, stored);
  }
  if (pattern.isMany()) {
    Context::note(counted(stores.size(), "value") + " set");
  }
}

// From the last place to the first, so that no removal moves a place that is yet to come.
void del(Context& /*context*/, const EditOptions& options) {
  const PathPattern pattern(options.path, options.where);
  if (!pattern.isMany() && pattern.single().isRoot()) {
    throw Failure(Exit::kUsage, "del needs a path; a whole document is not deleted");
  }
  const AreaOrFile chosen(options.areaOrFile);
  const FolderLock lock(chosen.file);
  LoadedFile document(chosen);
  const std::vector<Path> places = placesIn(document, options.areaOrFile, pattern);
  for (auto place = places.rbegin(); place != places.rend(); ++place) {
    removeAt(document, *place);
  }
  document.save(options.save);
  if (pattern.isMany()) {
    Context::note(counted(places.size(), "value") + " removed");
  }
}

// Appending is storing at the index behind the last element, which must be an array's.
void add(Context& context, const EditOptions& options) {
  const Path path(options.path);
  refuseDeepPath(path);
  GivenValue given(options.value);
  if (options.value.isSecret) {
    hideValueAt(path);
  }
  if (leadsToSecret(path.text())) {
    given.hide();
  }
  const AreaOrFile chosen(options.areaOrFile);
  const FolderLock lock(chosen.file);
  LoadedFile document(chosen);
  json_object* const array = document.locate(path).value;
  if (json_object_is_type(array, json_type_array) == 0) {
    throw Failure(Exit::kNo, inQuotes(chosen.name) + ": " + path.shown() + " is " +
                                 described(array) + "; add appends to arrays");
  }
  const Path element = path / Step(json_object_array_length(array));
  static_cast<void>(storeAt(document, element, given.make(nullptr)->jobj));
  document.save(options.save);
  context.out.line(context.out.foreign(element.text()));
}

// Adds the arguments of set and add.
void addEditArguments(const Command<EditOptions>& command, const char* pathHelp) {
  addPathArguments(command, pathHelp);
  addValueOptions(*command.app, command.options.value, ValueUse::kStored);
  addSaveOptions(*command.app, command.options.save);
}

void addGet(CLI::App& app, Context& context) {
  const auto getting = addCommand<GetOptions>(
      app, context, "get", "Print the value at a path, or each value with [*]",
      "  hearth get wifi 'radios.[0].channel'\n"
      "  ssid=$(hearth get wifi 'radios.[0].networks.[0].ssid')   texts come without quotes\n"
      "  hearth get wifi 'radios.[*].networks.[*].ssid'           a value a line\n"
      "  hearth get wifi 'radios.[*].networks.[*]' --columns ssid,enabled,security.mode\n"
      "  hearth get --default none wifi country\n"
      "  hearth get --json ./backup.json ''                       '' is the whole document",
      get);
  addPathArguments(getting, kManyPathHelp);
  addWhere(*getting.app, getting.options.where);
  getting.app->add_option("--default", getting.options.fallback, "print this where nothing is")
      ->type_name("VALUE");
  CLI::Option* const json = getting.app->add_flag(
      "--json", getting.options.json, "print texts as JSON too, and with [*] one array");
  getting.app->add_flag("--table", getting.options.table, "print objects as a table")
      ->excludes(json);
  getting.app
      ->add_option("--columns", getting.options.columns, "a table of these: paths in the objects")
      ->type_name("PATH,...")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->excludes(json);
}

}  // namespace

void addValueCommands(CLI::App& app, Context& context) {
  addGet(app, context);

  const auto setting = addCommand<EditOptions>(
      app, context, "set",
      "Store a value at a path, making what is missing on the way\n\n"
      "VALUE gets the type of the value that it replaces. Where nothing is replaced, 11 is an\n"
      "integer, 1.5 a double, true and false booleans, null is null, anything else a text.\n"
      "An index past the end of an array appends. With [*], each value that is there is replaced.",
      "  hearth set wifi 'radios.[0].channel' 11\n"
      "  hearth set wifi 'radios.[0].channel' 11 --if 6      only if it is 6 now\n"
      "  hearth set wifi 'radios.[*].networks.[*].enabled' false --where ssid=Guests\n"
      "  hearth set --secret wifi 'radios.[*].networks.[*].security.passphrase'   asks for it\n"
      "  hearth set --json service 'ddns.hosts' '[\"a.example\"]'",
      set);
  addEditArguments(setting, kManyPathHelp);
  addWhere(*setting.app, setting.options.where);
  setting.app
      ->add_option("--if", setting.options.expected,
                   "only if the value there now is OLD, as get prints it")
      ->type_name("OLD");

  const auto deleting = addCommand<EditOptions>(
      app, context, "del", "Remove the member or element at a path; later elements move up",
      "  hearth del wifi 'radios.[0].networks.[2]'\n"
      "  hearth del wifi 'radios.[*].networks.[*]' --where ssid=Guests",
      del);
  addPathArguments(deleting, kManyPathHelp);
  addWhere(*deleting.app, deleting.options.where);
  addSaveOptions(*deleting.app, deleting.options.save);

  addEditArguments(
      addCommand<EditOptions>(
          app, context, "add", "Append a value to the array at a path, and print its path",
          "  hearth add wifi bandSteering.exceptions 02:00:5E:10:00:77\n"
          "  hearth add wifi 'radios.[0].networks.[0].accessControl.rules' --from rule.json",
          add),
      kPathHelp);
}

}  // namespace hearth::tool
