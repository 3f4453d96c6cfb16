// cp and mv: the commands that copy and move values within a document.
//
// What is copied is taken aside before anything is stored, so that a copy never holds parts of
// itself. A move removes the originals last, from the last to the first, unless the copy has
// replaced the value that they were in.
#include <algorithm>

#include "hearth/kit/write.h"
#include "tools/command/arguments.h"
#include "tools/command/command.h"
#include "tools/document/edit.h"
#include "tools/document/folder_lock.h"
#include "tools/document/loaded_file.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct MoveOptions {
  std::string areaOrFile, path, to;
  std::vector<std::string> where;
  SaveOptions save;
};

// True when `path` begins with all steps of `start`.
bool beginsWith(const Path& path, const Path& start) {
  return path.steps.size() >= start.steps.size() &&
         std::equal(start.steps.begin(), start.steps.end(), path.steps.begin(),
                    [](const Step& left, const Step& right) { return left.name == right.name; });
}

void refuseSameOrInside(const Path& from, const Path& to) {
  if (beginsWith(to, from)) {
    throw Failure(Exit::kUsage, to.shown() + (to.steps.size() == from.steps.size()
                                                  ? " is where it is already"
                                                  : " is inside of " + from.shown()));
  }
}

// The end of an array, behind its last element. Many values go to an array only.
Path behindLast(const LoadedFile& document, const MoveOptions& options, const Path& to) {
  json_object* const array = document.locate(to).value;
  if (json_object_is_type(array, json_type_array) == 0) {
    throw Failure(Exit::kNo, inQuotes(options.areaOrFile) + ": " + to.shown() + " is " +
                                 described(array) + "; what [*] stands for goes to an array");
  }
  return to / Step(json_object_array_length(array));
}

struct Copies {
  std::vector<Path> from;
  std::vector<Value> values;
};

Copies copiesOf(const LoadedFile& document, const MoveOptions& options,
                const PathPattern& pattern) {
  Copies copies;
  copies.from = placesIn(document, options.areaOrFile, pattern);
  for (const Path& path : copies.from) {
    Result<Value> value = copy(View(document.locate(path).value));
    if (!value) {
      throw Failure(Exit::kIo, path.shown() + ": " + value.failure().sentence);
    }
    copies.values.push_back(std::move(*value));
  }
  return copies;
}

// Does the work of both commands.
void transfer(const MoveOptions& options, bool removesOriginals) {
  const PathPattern pattern(options.path, options.where);
  const Path to(options.to);
  refuseDeepPath(to);
  if (to.isRoot() || (!pattern.isMany() && pattern.single().isRoot())) {
    throw Failure(Exit::kUsage, "both places must be in the document, not all of it");
  }
  const AreaOrFile chosen(options.areaOrFile);
  const FolderLock lock(chosen.file);
  LoadedFile document(chosen);
  const Copies copies = copiesOf(document, options, pattern);
  Path stored = to;
  for (std::size_t i = 0; i < copies.from.size(); ++i) {
    refuseSameOrInside(copies.from[i], to);
    const Path target = pattern.isMany() ? behindLast(document, options, to) : to;
    stored = storeAt(document, target, copies.values[i].raw());
  }
  const bool isReplaced = !pattern.isMany() && beginsWith(copies.from.front(), stored);
  for (auto from = copies.from.rbegin();
       removesOriginals && !isReplaced && from != copies.from.rend(); ++from) {
    removeAt(document, *from);
  }
  document.save(options.save);
  if (pattern.isMany()) {
    Context::note(counted(copies.from.size(), "value") + (removesOriginals ? " moved" : " copied"));
  } else {
    noteAppended(to, stored);
  }
}

void cp(Context& /*context*/, const MoveOptions& options) {
  transfer(options, false);
}

void mv(Context& /*context*/, const MoveOptions& options) {
  transfer(options, true);
}

void addMoveArguments(const Command<MoveOptions>& command) {
  command.app->add_option("AREA|FILE", command.options.areaOrFile, kAreaOrFileHelp)->required();
  command.app->add_option("FROM", command.options.path, kManyPathHelp)->required();
  command.app->add_option("TO", command.options.to, "a path; with [*] in FROM, of an array")
      ->required();
  addWhere(*command.app, command.options.where);
  addSaveOptions(*command.app, command.options.save);
}

}  // namespace

void addMovingCommands(CLI::App& app, Context& context) {
  addMoveArguments(addCommand<MoveOptions>(
      app, context, "cp",
      "Copy a value within a document\n\n"
      "What is at TO is replaced. With [*] in FROM, each value is appended to the array at TO.",
      "  hearth cp wifi 'radios.[0].networks.[0]' 'radios.[1].networks.[9]'   appends\n"
      "  hearth cp wifi 'radios.[0].networks.[*]' 'radios.[1].networks' --where ssid=Guests",
      cp));
  addMoveArguments(addCommand<MoveOptions>(
      app, context, "mv",
      "Move a value within a document: rename a member, move an element\n\n"
      "What is at TO is replaced. With [*] in FROM, each value is appended to the array at TO.",
      "  hearth mv ./notes.json titel title\n"
      "  hearth mv ./notes.json 'open.[*]' closed --where done=true",
      mv));
}

}  // namespace hearth::tool
