#include "tools/path.h"

#include <algorithm>

#include "base/utf8.h"
#include "hearth/json_data.h"
#include "tools/failure.h"
#include "tools/json_text.h"
#include "tools/text.h"

namespace hearth::tool {
namespace {

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

Token tokenOf(const std::string& text, const std::string& path) {
  if (text.empty() || text.front() != '[') {
    return Token(text);
  }
  constexpr std::size_t kLongest = 9;  // digits; no array has more elements
  const bool isClosed = text.size() > 2 && text.back() == ']';
  const std::string digits = isClosed ? text.substr(1, text.size() - 2) : "";
  if (digits.empty() || digits.size() > kLongest ||
      digits.find_first_not_of("0123456789") != std::string::npos) {
    throw Failure(Exit::kUsage, "path " + inQuotes(path) + ": " + inQuotes(text) +
                                    " is no index; write a number from 0 in brackets, like [3]");
  }
  return Token(std::stoul(digits));
}

std::vector<std::string> namesIn(json_object* object) {
  std::vector<std::string> names;
  json_object_object_foreach(object, name, member) {
    static_cast<void>(member);
    names.emplace_back(name);
  }
  return names;
}

// "; its members are a, b, c", at most a few.
std::string membersOf(const std::vector<std::string>& names) {
  constexpr std::size_t kMost = 8;
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kMost); ++i) {
    text += (i == 0 ? "; its members are " : ", ") + inQuotes(names[i]);
  }
  return names.size() > kMost ? text + ", ..." : text;
}

// A member of the object whose name, dots and brackets included, begins what is left of the path.
bool isHiddenByDots(const std::vector<std::string>& names, const std::string& rest,
                    std::string& hidden) {
  for (const std::string& name : names) {
    const bool isOdd = name.find('.') != std::string::npos || name.rfind('[', 0) == 0;
    if (isOdd && (rest == name || rest.rfind(name + ".", 0) == 0)) {
      hidden = name;
      return true;
    }
  }
  return false;
}

std::string whyNoMember(json_object* object, const Path& path, std::size_t position) {
  const std::vector<std::string> names = namesIn(object);
  const std::string where = path.head(position).shown();
  Path rest;
  rest.tokens.assign(path.tokens.begin() + static_cast<std::ptrdiff_t>(position),
                     path.tokens.end());
  std::string hidden;
  if (isHiddenByDots(names, rest.text(), hidden)) {
    return where + " has a member named " + inQuotes(hidden) +
           ", which no path can address: names with dots or a leading bracket are out of reach; "
           "get the object that holds it";
  }
  const Token& token = path.tokens[position];
  if (token.isIndex) {
    return where + " is an object, so " + token.name + " leads nowhere; name a member" +
           membersOf(names);
  }
  const std::string guess = didYouMean(token.name, names);
  return where + " has no member " + inQuotes(token.name) +
         (guess.empty() ? membersOf(names) : guess);
}

std::string whyNoElement(json_object* array, const Path& path, std::size_t position) {
  const std::size_t length = json_object_array_length(array);
  const Token& token = path.tokens[position];
  const std::string where = path.head(position).shown();
  if (!token.isIndex) {
    return where + " is " + described(array) + ", so " + inQuotes(token.name) +
           " leads nowhere; give an index" +
           (length == 0 ? "" : ", [0] to [" + std::to_string(length - 1) + "]");
  }
  return where + " has only " + counted(length, "element") + "; " + token.name +
         " is past its end (indexes count from 0)";
}

}  // namespace

Path::Path(const std::string& text) {
  if (!isUtf8(text)) {
    throw Failure(Exit::kUsage, "path " + inQuotes(text) + " is not UTF-8; names in JSON are");
  }
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t dot = std::min(text.find('.', start), text.size());
    tokens.push_back(tokenOf(text.substr(start, dot - start), text));
    start = dot + 1;
  }
}

Path Path::operator/(Token token) const {
  Path longer = *this;
  longer.tokens.push_back(std::move(token));
  return longer;
}

Path Path::head(std::size_t count) const {
  Path shorter;
  shorter.tokens.assign(tokens.begin(), tokens.begin() + static_cast<std::ptrdiff_t>(count));
  return shorter;
}

// An empty last token is told by a dot behind it.
std::string Path::text() const {
  std::string result;
  for (const Token& token : tokens) {
    result += token.name + ".";
  }
  if (!tokens.empty() && !tokens.back().name.empty()) {
    result.pop_back();
  }
  return result;
}

std::string Path::shown() const {
  return isRoot() ? "the document" : inQuotes(textOrPointer());
}

bool Path::isAddressable() const {
  return std::none_of(tokens.begin(), tokens.end(), [](const Token& token) {
    return !token.isIndex &&
           (token.name.find('.') != std::string::npos || token.name.rfind('[', 0) == 0);
  });
}

std::string Path::pointer() const {
  std::string result;
  for (const Token& token : tokens) {
    result += "/" + (token.isIndex ? std::to_string(token.index)
                                   : replaced(replaced(token.name, "~", "~0"), "/", "~1"));
  }
  return result;
}

bool find(json_object* root, const Path& path, Place& place) {
  place = {nullptr, root};
  if (path.isRoot()) {
    return true;
  }
  place.container = JsonData::getJObj(root, path.head(path.tokens.size() - 1).text().c_str());
  const Token& last = path.tokens.back();
  place.value = nullptr;
  if (!last.isIndex) {
    return json_object_object_get_ex(place.container, last.name.c_str(), &place.value) != 0;
  }
  if (json_object_is_type(place.container, json_type_array) == 0) {
    return false;
  }
  place.value = json_object_array_get_idx(place.container, last.index);
  return last.index < json_object_array_length(place.container);
}

Place locate(json_object* root, const Path& path) {
  Place place{};
  if (!find(root, path, place)) {
    explainMissing(root, path);
  }
  return place;
}

void explainMissing(json_object* root, const Path& path) {
  Place place{};
  std::size_t position = 0;
  while (position < path.tokens.size() && find(root, path.head(position + 1), place) &&
         place.value != nullptr) {
    ++position;
  }
  if (position < path.tokens.size() && find(root, path.head(position + 1), place)) {
    ++position;  // that is the null in the way
  }
  static_cast<void>(find(root, path.head(position), place));
  std::string why;
  if (position == path.tokens.size()) {
    why = path.shown() + " cannot be reached";
  } else if (json_object_is_type(place.value, json_type_object) != 0) {
    why = whyNoMember(place.value, path, position);
  } else if (json_object_is_type(place.value, json_type_array) != 0) {
    why = whyNoElement(place.value, path, position);
  } else {
    why = path.head(position).shown() + " is " + typeName(place.value) + ": there is nothing in it";
  }
  throw Failure(Exit::kNo, why);
}

Path pathOfPointer(json_object* root, const std::string& pointer) {
  Path path;
  json_object* value = root;
  for (std::size_t start = 1; start <= pointer.size();) {
    const std::size_t slash = std::min(pointer.find('/', start), pointer.size());
    const std::string name =
        replaced(replaced(pointer.substr(start, slash - start), "~1", "/"), "~0", "~");
    start = slash + 1;
    if (json_object_is_type(value, json_type_array) == 0) {
      path.tokens.emplace_back(name);
      json_object_object_get_ex(value, name.c_str(), &value);
      continue;
    }
    const std::size_t index = std::strtoul(name.c_str(), nullptr, 10);
    path.tokens.emplace_back(index);
    value = json_object_array_get_idx(value, index);
  }
  return path;
}

namespace {

void walkFrom(const Path& path, json_object* value, const Visit& visit) {
  visit(path, value);
  if (json_object_is_type(value, json_type_object) != 0) {
    json_object_object_foreach(value, name, member) {
      walkFrom(path / Token(std::string(name)), member, visit);
    }
  } else if (json_object_is_type(value, json_type_array) != 0) {
    const std::size_t length = json_object_array_length(value);
    for (std::size_t i = 0; i < length; ++i) {
      walkFrom(path / Token(i), json_object_array_get_idx(value, i), visit);
    }
  }
}

}  // namespace

void walk(json_object* root, const Visit& visit) {
  walkFrom(Path(), root, visit);
}

}  // namespace hearth::tool
