#include "json_patch.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "server_limits.h"

namespace {

using hearth::Value;
using hearth::View;

using Tokens = std::vector<std::string>;

// The tokens of a JSON pointer; nothing when it is none.
std::optional<Tokens> tokensOf(std::string_view pointer) {
  Tokens tokens;
  for (std::size_t i = 0; i < pointer.size(); ++i) {
    if (pointer[i] == '/') {
      tokens.emplace_back();
      continue;
    }
    char c = pointer[i];
    if (c == '~') {
      const char escape = i + 1 < pointer.size() ? pointer[++i] : '\0';
      if (escape != '0' && escape != '1') {
        return std::nullopt;
      }
      c = escape == '0' ? '~' : '/';
    }
    if (tokens.empty()) {
      return std::nullopt;
    }
    tokens.back().push_back(c);
  }
  return tokens;
}

bool namesSecret(const Tokens& tokens) {
  return std::any_of(tokens.begin(), tokens.end(), hearth::isSecretName);
}

// An index as RFC 6901 has it: digits without a leading zero.
std::optional<std::size_t> indexOf(const std::string& token) {
  const bool isIndex = !token.empty() && token.size() <= 6 &&
                       (token[0] != '0' || token.size() == 1) &&
                       token.find_first_not_of("0123456789") == token.npos;
  return isIndex ? std::optional<std::size_t>(std::stoul(token)) : std::nullopt;
}

// A place in the document: a container that is there, and a name or index in it.
struct Place {
  json_object* container = nullptr;  // null: there is no such place
  std::string name;                  // of a member
  std::size_t index = 0;             // of an element; the array's length for its end
  bool isTaken = false;              // a value, maybe null, is there
  json_object* value = nullptr;      // ... this one

  bool isArray() const { return View(container).isArray(); }
};

Place placeIn(json_object* container, const std::string& token) {
  Place place;
  if (View(container).isObject()) {
    place.container = container;
    place.name = token;
    place.isTaken = json_object_object_get_ex(container, token.c_str(), &place.value) != 0;
  } else if (View(container).isArray()) {
    const std::size_t length = json_object_array_length(container);
    const auto index = token == "-" ? length : indexOf(token);
    if (index && *index <= length) {
      place.container = container;
      place.index = *index;
      place.isTaken = *index < length;
      place.value = place.isTaken ? json_object_array_get_idx(container, *index) : nullptr;
    }
  }
  return place;
}

// Requires: there is at least one token.
Place find(json_object* document, const Tokens& tokens) {
  Place place;
  for (const std::string& token : tokens) {
    place = placeIn(&token == &tokens.front() ? document : place.value, token);
    if (place.container == nullptr) {
      break;
    }
  }
  return place;
}

// Puts a value at a place: in front of the element that is there, or in the stead of the member.
void add(const Place& place, Value value) {
  if (!place.isArray()) {
    json_object_object_add(place.container, place.name.c_str(), value.release());
    return;
  }
  const std::size_t length = json_object_array_length(place.container);
  json_object_array_add(place.container, nullptr);
  for (std::size_t i = length; i > place.index; --i) {
    json_object_array_put_idx(place.container, i,
                              json_object_get(json_object_array_get_idx(place.container, i - 1)));
  }
  json_object_array_put_idx(place.container, place.index, value.release());
}

void remove(const Place& place) {
  if (place.isArray()) {
    json_object_array_del_idx(place.container, place.index, 1);
  } else {
    json_object_object_del(place.container, place.name.c_str());
  }
}

// Equal as JSON Schema's "const" means it: 1 is 1.0.
bool isEqual(View left, View right) {
  const Value schema = hearth::newObject();
  json_object_object_add(schema.raw(), "const", json_object_get(right.raw()));
  return static_cast<bool>(hearth::validate(left, schema));
}

// The walk through a patch.
class Patch {
 public:
  explicit Patch(json_object* document) : document_(document) {}

  PatchResult step(View operation) {
    const auto path = tokensIn(operation, "path");
    const std::string_view name = hearth::getOr(operation, "op", "");
    const bool hasValue = json_object_object_get_ex(operation.raw(), "value", nullptr) != 0;
    const bool needsValue = name == "add" || name == "replace" || name == "test";
    if (!path || path->empty() || (needsValue && !hasValue)) {
      return {400,
              "needs a path below the area's document, and a value where the operation has one"};
    }
    if (name == "move") {
      const auto from = tokensIn(operation, "from");
      return from && !from->empty() ? move(*from, *path)
                                    : PatchResult{400, "needs a place to move from"};
    }
    const Place place = find(document_, *path);
    if (place.container == nullptr || (!place.isTaken && name != "add")) {
      return {409, "nothing is at its path"};
    }
    const View value = hearth::find(operation, "value");
    if (name == "test") {
      return test(place, *path, value);
    }
    if (name == "remove") {
      remove(place);
    } else if (name == "replace") {
      replace(place, Value::sharing(value));
    } else if (name == "add") {
      add(place, Value::sharing(value));
    } else {
      return {400, "has an operation that there is not"};
    }
    return {200, ""};
  }

 private:
  static std::optional<Tokens> tokensIn(View operation, const char* member) {
    const auto pointer = hearth::get<std::string_view>(operation, member);
    return pointer ? tokensOf(*pointer) : std::nullopt;
  }

  static void replace(const Place& place, Value value) {
    if (place.isArray()) {
      json_object_array_put_idx(place.container, place.index, value.release());
    } else {
      add(place, std::move(value));
    }
  }

  static PatchResult test(const Place& place, const Tokens& path, View value) {
    if (namesSecret(path) || hearth::detail::holdsSecret(place.value)) {
      return {403, "tests a secret, or a value that holds one"};
    }
    return isEqual(place.value, value) ? PatchResult{200, ""}
                                       : PatchResult{409, "finds another value than it tests for"};
  }

  // Names go along with what they name, so a container may be moved with the secrets in it.
  PatchResult move(const Tokens& from, const Tokens& to) {
    if (namesSecret(from)) {
      return {403, "moves a secret"};
    }
    if (to.size() > from.size() && std::equal(from.begin(), from.end(), to.begin())) {
      return {409, "moves a value into itself"};
    }
    const Place source = find(document_, from);
    if (!source.isTaken) {
      return {409, "nothing is at the place to move from"};
    }
    Value value = Value::sharing(source.value);
    remove(source);
    const Place target = find(document_, to);
    if (target.container == nullptr) {
      return {409, "nothing is at its path"};
    }
    add(target, std::move(value));
    return {200, ""};
  }

  json_object* const document_;
};

}  // namespace

PatchResult applyPatch(hearth::Edit document, View patch) {
  if (!patch.isArray()) {
    return {400, "a JSON patch is an array of operations"};
  }
  if (hearth::elements(patch).size() > limits::kPatchSteps) {
    return {413, "the patch has too many operations"};
  }
  Patch walk(document.raw());
  std::size_t number = 0;
  for (const View operation : hearth::elements(patch)) {
    PatchResult result = walk.step(operation);
    if (result.status >= 400) {
      result.problem = "operation " + std::to_string(number) + " " + result.problem;
      return result;
    }
    ++number;
  }
  return {200, ""};
}
