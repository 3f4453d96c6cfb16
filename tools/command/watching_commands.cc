// watch: the command that prints what changes in the areas, as it happens.
//
// Each area's database is kept as it was last seen. When there is a reason to look, the files that
// are not the same any more are read, and the differences printed, path by path.
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <ctime>

#include "hearth/kit/area_lock.h"
#include "tools/command/command.h"
#include "tools/document/area.h"
#include "tools/document/input.h"
#include "tools/store/differences.h"
#include "tools/store/store_watch.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

struct WatchOptions {
  std::string area;
  bool json = false;
};

// The time of day for people, all of it for programs.
std::string timeNow(bool isWhole) {
  const time_t now = time(nullptr);
  struct tm fields {};
  char text[32] = "";
  const bool isWritten = localtime_r(&now, &fields) != nullptr &&
                         (isWhole ? strftime(text, sizeof(text), "%Y-%m-%dT%H:%M:%S%z", &fields)
                                  : strftime(text, sizeof(text), "%H:%M:%S", &fields)) > 0;
  return isWritten ? text : "-";
}

class WatchedArea {
 public:
  explicit WatchedArea(unsigned int area) : area_(area), file_(databaseFile(area)) {}

  // The first look: nothing is printed but what keeps the file from being read.
  void begin() {
    seen_ = state();
    try {
      document_ = readJson(file_);
    } catch (const Failure& failure) {
      complain("note: " + std::string(failure.what()));
    }
  }

  // Prints what has changed since the last look.
  void look(Context& context, const WatchOptions& options) {
    const detail::FileState now = state();
    if (now == seen_ && now.isSettled()) {
      return;
    }
    Handle document;
    try {
      document = now.inode == 0 ? Handle() : readJson(file_);
    } catch (const Failure& failure) {
      tellTrouble(now, failure.what());
      return;
    }
    seen_ = now;
    trouble_ = {};
    for (const Difference& difference : differences(document)) {
      print(context, options, difference);
    }
    document_ = std::move(document);
  }

 private:
  // All zero where there is no file.
  detail::FileState state() const {
    struct stat status {};
    return stat(file_.c_str(), &status) == 0 ? detail::FileState::of(status) : detail::FileState();
  }

  // Who writes in place leaves a part of a file for a moment: only what stays so is told, once.
  void tellTrouble(const detail::FileState& now, const char* why) {
    if (now == trouble_ && now.isSettled()) {
      complain("note: " + std::string(why));
      seen_ = now;
    }
    trouble_ = now;
  }

  // A database that comes or goes is one difference.
  std::vector<Difference> differences(const Handle& document) const {
    json_object* const was = document_ == nullptr ? nullptr : document_->jobj;
    json_object* const is = document == nullptr ? nullptr : document->jobj;
    std::vector<Difference> found = differencesOf(was, is);
    if (was == nullptr || is == nullptr) {
      for (Difference& difference : found) {
        difference.kind = is != nullptr ? Difference::Kind::kAdded : Difference::Kind::kRemoved;
      }
    }
    return found;
  }

  void print(Context& context, const WatchOptions& options, const Difference& difference) const {
    const char* const name = API_DATA_DIR[area_];
    if (!options.json) {
      context.out.line(timeNow(false) + " " + lineOf(difference, name, context.out));
      return;
    }
    const Handle object = objectOf(difference, name);
    object->set("time", timeNow(true).c_str());
    context.out.line(jsonText(object->jobj, context.out, Layout::kOneLine));
  }

  const unsigned int area_;
  const std::string file_;
  Handle document_;  // as last seen; null for none
  detail::FileState seen_;
  detail::FileState trouble_;  // of a file that could not be read
};

// Lines are written whole before the next wait, so a signal in the wait loses none.
void endByRequest(int /*signal*/) {
  _exit(static_cast<int>(Exit::kDone));
}

std::vector<unsigned int> areasOf(const WatchOptions& options) {
  if (!options.area.empty()) {
    return {areaOf(options.area)};
  }
  std::vector<unsigned int> areas;
  for (unsigned int area = 0; area < areaNames().size(); ++area) {
    areas.push_back(area);
  }
  return areas;
}

// Whoever has stopped reading the output has seen enough.
void watch(Context& context, const WatchOptions& options) {
  std::vector<WatchedArea> areas;
  std::vector<std::string> folders;
  for (const unsigned int area : areasOf(options)) {
    const std::string file = databaseFile(area);
    areas.emplace_back(area);
    folders.push_back(file.substr(0, file.rfind('/')));
  }
  StoreWatch watch(folders);
  for (WatchedArea& area : areas) {
    area.begin();
  }
  signal(SIGINT, endByRequest);
  signal(SIGTERM, endByRequest);
  Context::note("watching " + counted(areas.size(), "area"));
  while (watch.wait(context.out.descriptor())) {
    for (WatchedArea& area : areas) {
      area.look(context, options);
    }
    context.out.finish();
  }
}

}  // namespace

void addWatchingCommands(CLI::App& app, Context& context) {
  const auto watching = addCommand<WatchOptions>(
      app, context, "watch",
      "Print what changes in an area, or in all of them, as it happens\n\n"
      "Until it is interrupted or nobody reads its output. Of secrets only that they change is\n"
      "shown. With --json each change is an object on a line of its own.",
      "  hearth watch\n  hearth watch --json wifi | while read -r change; do ...; done", watch);
  watching.app->add_option("AREA", watching.options.area, "the area; all of them without it");
  watching.app->add_flag("--json", watching.options.json, "print a JSON object a line");
}

}  // namespace hearth::tool
