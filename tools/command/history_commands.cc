// undo and log: the commands that look at the former files of an area, and bring one back.
//
// An undo is a change like any other: what it replaces is kept, so a second undo takes back the
// first.
#include <algorithm>
#include <ctime>

#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/database_check.h"
#include "tools/document/fingerprint.h"
#include "tools/document/folder_lock.h"
#include "tools/document/history.h"
#include "tools/document/input.h"
#include "tools/document/loaded_file.h"
#include "tools/store/differences.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct HistoryOptions {
  std::string area;
  unsigned long change = 0;  // 0: the last one
  bool yes = false;
  bool noSchema = false;
  bool json = false;
};

std::string timeOf(int64_t seconds) {
  const std::string text = utcText(static_cast<time_t>(seconds));
  return text.empty() ? "-" : text;
}

// What a former file held; null for what is no document.
json_object* rootOf(const Handle& document) {
  return document == nullptr ? nullptr : document->jobj;
}

// Former files may be as broken as any file; that ends no list.
Handle documentIn(const std::string& text, const std::string& file) {
  try {
    return parse(text, file);
  } catch (const Failure&) {
    return nullptr;
  }
}

// A change as log shows it, between the file that it replaced and the one that took its place.
class LoggedChange {
 public:
  LoggedChange(const FormerFile& former, const std::string& oldText, const std::string& newText)
      : former_(former),
        was_(documentIn(oldText, former.file)),
        is_(documentIn(newText, former.file)),
        isShared_(fingerprintOfText(newText) != former.after) {}

  void print(Context& context) const {
    context.out.line(context.out.inked(Ink::kNumber, std::to_string(former_.number)) + "  " +
                     timeOf(former_.time) +
                     (isShared_ ? "  together with a change that somebody else made later" : "") +
                     (was_ == nullptr ? "  replaced a file that does not parse" : ""));
    for (const Difference& difference : differences()) {
      context.out.line("    " + lineOf(difference, "", context.out));
    }
  }

  json_object* json(const std::string& area) const {
    json_object* const object = json_object_new_object();
    json_object* const changes = json_object_new_array();
    for (const Difference& difference : differences()) {
      json_object_array_add(changes, json_object_get(objectOf(difference, area)->jobj));
    }
    json_object_object_add(object, "number",
                           json_object_new_int64(static_cast<int64_t>(former_.number)));
    json_object_object_add(object, "time", json_object_new_string(timeOf(former_.time).c_str()));
    json_object_object_add(object, "others", json_object_new_boolean(isShared_ ? 1 : 0));
    json_object_object_add(object, "changes", changes);
    return object;
  }

 private:
  std::vector<Difference> differences() const {
    return was_ == nullptr || is_ == nullptr ? std::vector<Difference>()
                                             : differencesOf(rootOf(was_), rootOf(is_));
  }

  const FormerFile& former_;
  const Handle was_;
  const Handle is_;
  const bool isShared_;  // the difference holds more than the change
};

// The newest change first; each lies between one former file and the next.
void log(Context& context, const HistoryOptions& options) {
  const std::string file = databaseFile(areaOf(options.area));
  const std::vector<FormerFile> all = formerFiles(file);
  TreeMapObject array(true);
  std::string newer = exists(file) ? readWhole(file) : "";
  for (auto former = all.rbegin(); former != all.rend(); ++former) {
    std::string older = readWhole(former->file);
    const LoggedChange change(*former, older, newer);
    if (options.json) {
      json_object_array_add(array.jobj, change.json(options.area));
    } else {
      change.print(context);
    }
    newer = std::move(older);
  }
  if (options.json) {
    context.out.line(jsonText(array.jobj, context.out));
  } else if (all.empty()) {
    Context::note("no former file of the area " + options.area + " is kept");
  }
}

// The former file that undoes the change, and all that came after it.
FormerFile chosenOf(const std::vector<FormerFile>& all, const HistoryOptions& options) {
  if (all.empty()) {
    throw Failure(Exit::kNo, "area " + options.area + ": no former file is kept");
  }
  if (options.change == 0) {
    return all.back();
  }
  const auto found = std::find_if(all.begin(), all.end(), [&](const FormerFile& former) {
    return former.number == options.change;
  });
  if (found == all.end()) {
    throw Failure(Exit::kNo, "area " + options.area + ": no change " +
                                 std::to_string(options.change) + " is kept; 'hearth log " +
                                 options.area + "' lists them");
  }
  return *found;
}

void refuseUndoingOthers(const std::string& file, const FormerFile& last, const std::string& text) {
  if (fingerprintOfText(text) != last.after) {
    throw Failure(
        Exit::kConflict,
        inQuotes(file) + ": was changed by somebody else since; --yes takes that back too");
  }
}

// The file comes back byte by byte, so it is written as it is and not as a document.
void undo(Context& context, const HistoryOptions& options) {
  const unsigned int area = areaOf(options.area);
  const std::string file = databaseFile(area);
  const FolderLock lock(file);
  const std::vector<FormerFile> all = formerFiles(file);
  const FormerFile former = chosenOf(all, options);
  const std::string old = exists(file) ? readWhole(file) : "";
  if (!options.yes) {
    refuseUndoingOthers(file, all.back(), old);
  }
  const std::string text = readWhole(former.file);
  if (text == old) {
    Context::note("the area is as it was before the change already");
    return;
  }
  const Handle was = documentIn(old, file);
  const Handle is = documentIn(text, former.file);
  if (!options.noSchema && is != nullptr &&
      !refuseBreakingSchema(area, *is, "the former file",
                            "nothing is changed, --no-schema brings it back all the same")) {
    noteUnguarded(area);
  }
  if (rootOf(was) != nullptr && rootOf(is) != nullptr) {
    for (const Difference& difference : differencesOf(was->jobj, is->jobj)) {
      context.out.line(lineOf(difference, "", context.out));
    }
  }
  saveText(file, text);
}

}  // namespace

void addHistoryCommands(CLI::App& app, Context& context) {
  const auto undoing = addCommand<HistoryOptions>(
      app, context, "undo",
      "Take back the last change of an area that was made with this command\n\n"
      "The former file comes back as it was, and what differs is printed. A second undo takes "
      "back\n"
      "the first. HEARTH_HISTORY is how many changes are kept of each area: 10, or 0 for none.",
      "  hearth undo wifi\n  hearth undo wifi --change 12     and all that came after it", undo);
  undoing.app->add_option("AREA", undoing.options.area, "the area")->required();
  undoing.app
      ->add_option("--change", undoing.options.change, "the number of a change, from hearth log")
      ->type_name("N");
  undoing.app->add_flag("--yes", undoing.options.yes,
                        "although somebody else has changed the area since");
  undoing.app->add_flag("--no-schema", undoing.options.noSchema,
                        "although it does not conform to AREA_SCHEMA.ldb");

  const auto logging = addCommand<HistoryOptions>(
      app, context, "log",
      "List the changes of an area that were made with this command, newest first\n\n"
      "Each with its number, its time, and what it changed. Secrets are not shown.",
      "  hearth log wifi", log);
  logging.app->add_option("AREA", logging.options.area, "the area")->required();
  logging.app->add_flag("--json", logging.options.json, "print the list as JSON");
}

}  // namespace hearth::tool
