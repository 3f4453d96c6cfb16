// get, set, del and add: one value of a document.
#include <algorithm>

#include "hearth/json_data.h"
#include "tools/command/command.h"
#include "tools/document/document.h"
#include "tools/document/path.h"
#include "tools/document/value.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

constexpr char kTargetHelp[] = "an area (hearth areas), or a JSON file";
constexpr char kPathHelp[] = "names and indexes joined by dots: 'radios.[0].channel'";

struct GetOptions {
  std::string target, path;
  bool json = false;
};

struct EditOptions {
  std::string target, path;
  ValueOptions value;
  SaveOptions save;
};

void get(Context& context, const GetOptions& options) {
  const Path path(options.path);
  const Document document{Target(options.target)};
  json_object* const value = document.locate(path).value;
  if (!options.json && json_object_is_type(value, json_type_string) != 0) {
    const auto size = static_cast<std::size_t>(json_object_get_string_len(value));
    context.out.line(context.out.foreign({json_object_get_string(value), size}));
  } else {
    context.out.line(jsonText(value, context.out));
  }
}

// A document is nested at most this deep, so no longer path leads anywhere.
void refuseDeepPath(const Path& path) {
  constexpr std::size_t kDeepest = 32;
  if (path.tokens.size() > kDeepest) {
    throw Failure(Exit::kUsage, "the path has " + std::to_string(path.tokens.size()) +
                                    " steps; a document is nested at most 32 levels deep");
  }
}

// The library would append a member to an array as a new object; here that is taken for a mistake.
void refuseMemberOfArray(const Document& document, const Path& path) {
  if (json_object_is_type(document.root(), json_type_array) != 0 && !path.tokens[0].isIndex) {
    document.explainMissing(path);
  }
}

// Where a store puts a value: an index past the end of its array, or in a new one, is the next.
Path storedAt(json_object* root, const Path& path) {
  Path result;
  for (Token token : path.tokens) {
    Place place{};
    const bool isThere = find(root, result, place);
    if (token.isIndex) {
      const bool isArray = isThere && json_object_is_type(place.value, json_type_array) != 0;
      const std::size_t length = isArray ? json_object_array_length(place.value) : 0;
      token = Token(std::min(token.index, length));
    }
    result = result / token;
  }
  return result;
}

void store(const Document& document, const Path& path, json_object* value) {
  const std::string text = path.text();
  if (JsonData::setJObj(document.root(), text.c_str(), value) != 0) {
    document.explainMissing(path);
  }
}

void set(Context& /*context*/, const EditOptions& options) {
  const Path path(options.path);
  if (path.isRoot()) {
    throw Failure(Exit::kUsage, "set needs a path; import replaces a whole database");
  }
  refuseDeepPath(path);
  const Value given(options.value);
  const Target target(options.target);
  const FolderLock lock(target.file);
  Document document(target);
  refuseMemberOfArray(document, path);
  Place old{};
  static_cast<void>(find(document.root(), path, old));
  const Handle value = given.make(old.value);
  const Path stored = storedAt(document.root(), path);
  store(document, path, value->jobj);
  document.save(options.save);
  if (stored.text() != path.text()) {
    Context::note(path.shown() + " is past the end of its array: stored as " + stored.shown());
  }
}

void del(Context& /*context*/, const EditOptions& options) {
  const Path path(options.path);
  if (path.isRoot()) {
    throw Failure(Exit::kUsage, "del needs a path; a whole document is not deleted");
  }
  const Target target(options.target);
  const FolderLock lock(target.file);
  Document document(target);
  const Place place = document.locate(path);
  const std::string text = path.text();
  if (place.value == nullptr && json_object_is_type(place.container, json_type_object) != 0) {
    document.handle().set(text.c_str(), false);  // the library takes a null for nothing
  } else if (place.value == nullptr) {
    json_object_array_put_idx(place.container, path.tokens.back().index,
                              json_object_new_boolean(0));
  }
  document.handle().del(text.c_str());
  document.save(options.save);
}

void add(Context& context, const EditOptions& options) {
  const Path path(options.path);
  refuseDeepPath(path);
  const Value given(options.value);
  const Target target(options.target);
  const FolderLock lock(target.file);
  Document document(target);
  json_object* const array = document.locate(path).value;
  if (json_object_is_type(array, json_type_array) == 0) {
    throw Failure(Exit::kNo, inQuotes(target.name) + ": " + path.shown() + " is " +
                                 described(array) + "; add appends to arrays");
  }
  const Path element = path / Token(json_object_array_length(array));
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
void addPlace(const Command<Options>& command) {
  command.app->add_option("AREA|FILE", command.options.target, kTargetHelp)->required();
  command.app->add_option("PATH", command.options.path, kPathHelp)->required();
}

void addPlaceAndValue(const Command<EditOptions>& command) {
  addPlace(command);
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
  addPlace(getting);
  getting.app->add_flag("--json", getting.options.json, "print texts as JSON too");

  addPlaceAndValue(addCommand<EditOptions>(
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
  addPlace(deleting);
  addSaveOptions(*deleting.app, deleting.options.save);

  addPlaceAndValue(addCommand<EditOptions>(
      app, context, "add", "Append a value to the array at a path, and print its path",
      "  hearth add wifi bandSteering.exceptions 02:00:5E:10:00:77\n"
      "  hearth add wifi 'radios.[0].networks.[0].accessControl.rules' --from rule.json",
      add));
}

}  // namespace hearth::tool
