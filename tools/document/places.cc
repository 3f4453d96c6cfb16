// A pattern is cut at its "[*]" into paths, which are read as all paths are. To expand it, the
// first part is followed to an array, the second part is put behind the path of each element, and
// so on; so the library is never asked about anything but plain paths.
#include "tools/document/places.h"

#include <algorithm>

#include "hearth/kit/render.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

constexpr char kEach[] = "[*]";

Path operator+(Path path, const Path& rest) {
  path.steps.insert(path.steps.end(), rest.steps.begin(), rest.steps.end());
  return path;
}

// The first "=" ends the path: values may hold more of them.
Condition conditionOf(const std::string& text) {
  const std::size_t mark = text.find('=');
  if (mark == 0 || mark == std::string::npos) {
    throw Failure(Exit::kUsage, "--where " + inQuotes(text) + " is not KEY=VALUE");
  }
  return {Path(text.substr(0, mark)), text.substr(mark + 1)};
}

}  // namespace

std::string printed(json_object* value) {
  if (json_object_is_type(value, json_type_string) != 0) {
    return {json_object_get_string(value),
            static_cast<std::size_t>(json_object_get_string_len(value))};
  }
  return toText(View(value));
}

// A [*] is a step of its own: between dots, or at an end of the text.
PathPattern::PathPattern(const std::string& text, const std::vector<std::string>& conditions)
    : text_(text) {
  std::string part;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t dot = std::min(text.find('.', start), text.size());
    const std::string step = text.substr(start, dot - start);
    start = dot + 1;
    if (step == kEach) {
      parts_.emplace_back(part);
      part.clear();
    } else {
      part += step + ".";
    }
  }
  parts_.push_back(parts_.empty() ? Path(text) : Path(part));
  for (const std::string& condition : conditions) {
    conditions_.push_back(conditionOf(condition));
  }
  if (!conditions.empty() && !isMany()) {
    throw Failure(Exit::kUsage, "--where picks among the elements that [*] stands for, and path " +
                                    inQuotes(text) + " has none");
  }
}

Path PathPattern::first() const {
  Path path = parts_.front();
  for (auto part = parts_.begin() + 1; part != parts_.end(); ++part) {
    path = path / Step(std::size_t{0}) + *part;
  }
  return path;
}

bool PathPattern::isWanted(json_object* element) const {
  return std::all_of(conditions_.begin(), conditions_.end(), [&](const Condition& condition) {
    PathEnd end{};
    return find(element, condition.path, end) && printed(end.value) == condition.text;
  });
}

// Adds the paths that begin with `start` and go on with the parts from `part`.
void PathPattern::expand(json_object* root, std::size_t part, const Path& start,
                         std::vector<Path>& paths) const {
  const Path path = start + parts_[part];
  if (part + 1 == parts_.size()) {
    paths.push_back(path);
    return;
  }
  PathEnd end{};
  const bool isThere = find(root, path, end);
  const bool isInnermost = part + 2 == parts_.size();
  std::size_t index = 0;
  for (const View element : elements(View(isThere ? end.value : nullptr))) {
    const Path at = path / Step(index++);
    if (!isInnermost || isWanted(element.raw())) {
      expand(root, part + 1, at, paths);
    }
  }
}

std::vector<Path> PathPattern::expandedIn(json_object* root) const {
  std::vector<Path> paths;
  expand(root, 0, Path(), paths);
  return paths;
}

std::vector<Path> PathPattern::existingIn(json_object* root) const {
  std::vector<Path> paths = expandedIn(root);
  const auto isMissing = [root](const Path& path) {
    PathEnd end{};
    return !find(root, path, end);
  };
  paths.erase(std::remove_if(paths.begin(), paths.end(), isMissing), paths.end());
  if (paths.empty()) {
    explainNone(root);
  }
  return paths;
}

// The first way that the pattern could go is followed up to where it ends: a step that leads
// nowhere, a value that is no array, or an array without elements. If it ends nowhere, the
// conditions have left nothing over.
void PathPattern::explainNone(json_object* root) const {
  Path path;
  for (std::size_t part = 0; part < parts_.size(); ++part) {
    path = path + parts_[part];
    PathEnd end{};
    if (!find(root, path, end)) {
      explainMissing(root, path);
    }
    if (part + 1 == parts_.size()) {
      break;
    }
    if (json_object_is_type(end.value, json_type_array) == 0) {
      throw Failure(Exit::kNo, path.shown() + " is " + described(end.value) +
                                   "; [*] stands for the elements of an array");
    }
    if (json_object_array_length(end.value) == 0) {
      throw Failure(Exit::kNo, path.shown() + " is an array of 0 elements: " + inQuotes(text_) +
                                   " leads to nothing");
    }
    path = path / Step(std::size_t{0});
  }
  throw Failure(Exit::kNo, conditions_.empty()
                               ? inQuotes(text_) + " leads to nothing"
                               : "no element of " + inQuotes(text_) + " satisfies --where");
}

}  // namespace hearth::tool
