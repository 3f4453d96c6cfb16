// A path is cut at its dots into steps, and each step checked: the library reads paths forgivingly,
// which at a keyboard hides mistakes. A finished path is put together again for the library, which
// follows it.
//
// Explaining a path that leads nowhere goes step by step: the longest beginning that leads to a
// value is followed, and the message says why the next step cannot be taken from that value, be it
// an object, an array or anything else.
#include "tools/document/path.h"

#include <algorithm>
#include <cstdlib>

#include "base/json_ref.h"
#include "base/utf8.h"
#include "hearth/json_data.h"
#include "hearth/kit/validate.h"
#include "hearth/kit/walk.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/json_text.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// The text with every `from` replaced. Goes on behind each replacement: the "~" of a new "~0" is
// not replaced again.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// A step that begins with a bracket must be an index: the library has readings of "[x]" and "[-1]"
// that nobody expects.
Step stepOf(const std::string& text, const std::string& path) {
  if (text.empty() || text.front() != '[') {
    return Step(text);
  }
  if (text == "[*]") {
    throw Failure(Exit::kUsage, "path " + inQuotes(path) +
                                    ": here is room for one place only, and [*] stands for many");
  }
  constexpr std::size_t kMostDigits = 9;  // no array has more elements than these can count
  const bool isClosed = text.size() > 2 && text.back() == ']';
  const std::string digits = isClosed ? text.substr(1, text.size() - 2) : "";
  if (digits.empty() || digits.size() > kMostDigits ||
      digits.find_first_not_of("0123456789") != std::string::npos) {
    throw Failure(Exit::kUsage, "path " + inQuotes(path) + ": " + inQuotes(text) +
                                    " is no index; write a number from 0 in brackets, like [3]");
  }
  return Step(std::stoul(digits));
}

// The names of an object's members, in their order.
std::vector<std::string> namesIn(json_object* object) {
  std::vector<std::string> names;
  for (const Member& member : members(View(object))) {
    names.emplace_back(member.name);
  }
  return names;
}

// The end of a message: "; its members are 'a', 'b', 'c'", of which at most a few are listed.
std::string membersOf(const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 8;
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kMost); ++i) {
    text += (i == 0 ? "; its members are " : ", ") + inQuotes(names[i]);
  }
  return names.size() > kMost ? text + ", ..." : text;
}

// Looks for a member that the user probably means but no path can address: its name, dots and
// brackets included, is what is left of the path or the beginning of that.
bool findUnaddressable(const std::vector<std::string>& names, const std::string& rest,
                       std::string& unaddressable) {
  for (const std::string& name : names) {
    const bool isOdd = name.find('.') != std::string::npos || name.rfind('[', 0) == 0;
    if (isOdd && (rest == name || rest.rfind(name + ".", 0) == 0)) {
      unaddressable = name;
      return true;
    }
  }
  return false;
}

// Why the step at this position cannot be taken from an object: the name is out of reach of paths,
// the step is an index, or there is no such member.
std::string whyNoMember(json_object* object, const Path& path, std::size_t position) {
  const std::vector<std::string> names = namesIn(object);
  const std::string where = path.head(position).shown();
  Path rest;
  rest.steps.assign(path.steps.begin() + static_cast<std::ptrdiff_t>(position), path.steps.end());
  std::string unaddressable;
  if (findUnaddressable(names, rest.text(), unaddressable)) {
    return where + " has a member named " + inQuotes(unaddressable) +
           ", which no path can address: names with dots or a leading bracket are out of reach; "
           "get the object that holds it";
  }
  const Step& step = path.steps[position];
  if (step.isIndex) {
    return where + " is an object, so " + step.name + " leads nowhere; name a member" +
           membersOf(names);
  }
  const std::string guess = didYouMean(step.name, names);
  return where + " has no member " + inQuotes(step.name) +
         (guess.empty() ? membersOf(names) : guess);
}

// Why the step at this position cannot be taken from an array: it is a name, or an index too high.
std::string whyNoElement(json_object* array, const Path& path, std::size_t position) {
  const std::size_t length = json_object_array_length(array);
  const Step& step = path.steps[position];
  const std::string where = path.head(position).shown();
  if (!step.isIndex) {
    return where + " is " + described(array) + ", so " + inQuotes(step.name) +
           " leads nowhere; give an index" +
           (length == 0 ? "" : ", [0] to [" + std::to_string(length - 1) + "]");
  }
  return where + " has only " + counted(length, "element") + "; " + step.name +
         " is past its end (indexes count from 0)";
}

}  // namespace

// A dot ends a step, and nothing follows the last one: "a." is the same as "a", "a.." the empty
// member of "a", and "." that of the root.
Path::Path(const std::string& text) {
  if (!isUtf8(text)) {
    throw Failure(Exit::kUsage, "path " + inQuotes(text) + " is not UTF-8; names in JSON are");
  }
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t dot = std::min(text.find('.', start), text.size());
    steps.push_back(stepOf(text.substr(start, dot - start), text));
    start = dot + 1;
  }
}

Path Path::operator/(Step step) const {
  Path longer = *this;
  longer.steps.push_back(std::move(step));
  return longer;
}

Path Path::head(std::size_t count) const {
  Path shorter;
  shorter.steps.assign(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(count));
  return shorter;
}

// Only behind an empty name the last dot must stay, to say that the name is there.
std::string Path::text() const {
  std::string result;
  for (const Step& step : steps) {
    result += step.name + ".";
  }
  if (!steps.empty() && !steps.back().name.empty()) {
    result.pop_back();
  }
  return result;
}

std::string Path::shown() const {
  return isRoot() ? "the document" : inQuotes(textOrPointer());
}

// An index can always be addressed, although its text begins with a bracket too.
bool Path::isAddressable() const {
  return std::none_of(steps.begin(), steps.end(), [](const Step& step) {
    return !step.isIndex &&
           (step.name.find('.') != std::string::npos || step.name.rfind('[', 0) == 0);
  });
}

std::string Path::pointer() const {
  std::string result;
  for (const Step& step : steps) {
    result += "/" + (step.isIndex ? std::to_string(step.index)
                                  : replaced(replaced(step.name, "~", "~0"), "/", "~1"));
  }
  return result;
}

// The library's look-up answers null both for nothing and for JSON null, so it is asked only for
// the container; the last step is looked up here, where the two can be told apart.
bool find(json_object* root, const Path& path, PathEnd& end) {
  end = {nullptr, root};
  if (path.isRoot()) {
    return true;
  }
  end.container = JsonData::getJObj(root, path.head(path.steps.size() - 1).text().c_str());
  const Step& last = path.steps.back();
  end.value = nullptr;
  if (!last.isIndex) {
    return json_object_object_get_ex(end.container, last.name.c_str(), &end.value) != 0;
  }
  if (json_object_is_type(end.container, json_type_array) == 0) {
    return false;
  }
  end.value = json_object_array_get_idx(end.container, last.index);
  return last.index < json_object_array_length(end.container);
}

void explainMissing(json_object* root, const Path& path) {
  PathEnd end{};
  std::size_t position = 0;  // how many steps lead to a value
  while (position < path.steps.size() && find(root, path.head(position + 1), end) &&
         end.value != nullptr) {
    ++position;
  }
  if (position < path.steps.size() && find(root, path.head(position + 1), end)) {
    ++position;  // a null is the last that can be reached: there is nothing in it
  }
  static_cast<void>(find(root, path.head(position), end));
  std::string why;
  if (position == path.steps.size()) {
    why = path.shown() + " cannot be reached";
  } else if (json_object_is_type(end.value, json_type_object) != 0) {
    why = whyNoMember(end.value, path, position);
  } else if (json_object_is_type(end.value, json_type_array) != 0) {
    why = whyNoElement(end.value, path, position);
  } else {
    why = path.head(position).shown() + " is " + typeName(end.value) + ": there is nothing in it";
  }
  throw Failure(Exit::kNo, why);
}

namespace {

// Whether a part of a pointer is a name or an index shows only in the document: the path and the
// value are followed side by side.
json_object* follow(json_object* root, std::string_view pointer, Path& path) {
  json_object* value = root;
  while (!pointer.empty()) {
    const std::string name = detail::cutToken(pointer);
    if (json_object_is_type(value, json_type_array) == 0) {
      path.steps.emplace_back(name);
      value = memberOf(value, name.c_str());
      continue;
    }
    const std::size_t index = std::strtoul(name.c_str(), nullptr, 10);
    path.steps.emplace_back(index);
    value = json_object_array_get_idx(value, index);
  }
  return value;
}

}  // namespace

Path pathOfPointer(json_object* root, const std::string& pointer) {
  Path path;
  follow(root, pointer, path);
  return path;
}

json_object* valueAtPointer(json_object* root, const std::string& pointer) {
  Path path;
  return follow(root, pointer, path);
}

namespace {

// Recursion is safe: a document that could be loaded is nested at most 32 levels deep.
void walkFrom(const Path& path, json_object* value, const Visit& visit) {
  visit(path, value);
  for (const Member& member : members(View(value))) {
    walkFrom(path / Step(std::string(member.name)), member.value.raw(), visit);
  }
  std::size_t index = 0;
  for (const View element : elements(View(value))) {
    walkFrom(path / Step(index++), element.raw(), visit);
  }
}

}  // namespace

void walk(json_object* root, const Visit& visit) {
  walkFrom(Path(), root, visit);
}

}  // namespace hearth::tool
