// Storing and removing are the library's. What stands around them here says beforehand what the
// library would do in a way that surprises at a keyboard, and afterwards what it refused.
#include "tools/document/edit.h"

#include <algorithm>

#include "hearth/json_data.h"
#include "hearth/kit/write.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/output.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

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

}  // namespace

std::vector<Path> placesIn(const LoadedFile& document, const std::string& name,
                           const PathPattern& pattern) {
  try {
    return pattern.existingIn(document.root());
  } catch (const Failure& failure) {
    throw Failure(failure.exit(), inQuotes(name) + ": " + failure.what());
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

// Where the value goes must be known before the store changes the arrays on the way. The library
// refuses only paths that it cannot follow, and those can be explained.
Path storeAt(const LoadedFile& document, const Path& path, json_object* value) {
  refuseMemberOfArray(document, path);
  Path stored = whereStored(document.root(), path);
  if (JsonData::setJObj(document.root(), path.text().c_str(), value) != 0) {
    document.explainMissing(path);
  }
  return stored;
}

// The library takes an element that is null for nothing and would not delete it, so a null becomes
// false first.
void removeAt(const LoadedFile& document, const Path& path) {
  const PathEnd end = document.locate(path);
  if (end.value == nullptr && path.steps.back().isIndex) {
    json_object_array_put_idx(end.container, path.steps.back().index, json_object_new_boolean(0));
  }
  static_cast<void>(remove(Edit(document.root()), path.text()));
}

void noteAppended(const Path& path, const Path& stored) {
  if (stored.text() != path.text()) {
    complain("note: " + path.shown() + " is past the end of its array: stored as " +
             stored.shown());
  }
}

}  // namespace hearth::tool
