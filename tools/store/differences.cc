#include "tools/store/differences.h"

#include <algorithm>

#include "base/json_ref.h"
#include "hearth/kit/parse.h"
#include "hearth/kit/secrets.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

using Kind = Difference::Kind;

// A walk over two documents at once.
class Comparison {
 public:
  void compare(const Path& path, json_object* was, json_object* is) {
    const json_type type = json_object_get_type(was);
    if (type != json_object_get_type(is)) {
      found.push_back({Kind::kChanged, path, was, is});
    } else if (type == json_type_object) {
      compareMembers(path, was, is);
    } else if (type == json_type_array) {
      compareElements(path, was, is);
    } else if (json_object_equal(was, is) == 0) {
      found.push_back({Kind::kChanged, path, was, is});
    }
  }

  std::vector<Difference> found;

 private:
  void compareMembers(const Path& path, json_object* was, json_object* is) {
    json_object* other = nullptr;
    for (const Member& member : members(View(was))) {
      const Path place = path / Step(std::string(member.name));
      if (json_object_object_get_ex(is, member.name.data(), &other) != 0) {
        compare(place, member.value.raw(), other);
      } else {
        found.push_back({Kind::kRemoved, place, member.value.raw(), nullptr});
      }
    }
    for (const Member& member : members(View(is))) {
      if (json_object_object_get_ex(was, member.name.data(), &other) == 0) {
        found.push_back(
            {Kind::kAdded, path / Step(std::string(member.name)), nullptr, member.value.raw()});
      }
    }
  }

  // Between what both begin and end with, elements are taken in pairs as far as they go.
  void compareElements(const Path& path, json_object* was, json_object* is) {
    const std::size_t wasCount = json_object_array_length(was);
    const std::size_t isCount = json_object_array_length(is);
    const std::size_t both = std::min(wasCount, isCount);
    const auto areEqual = [&](std::size_t left, std::size_t right) {
      return json_object_equal(json_object_array_get_idx(was, left),
                               json_object_array_get_idx(is, right)) != 0;
    };
    std::size_t start = 0;
    while (start < both && areEqual(start, start)) {
      ++start;
    }
    std::size_t end = 0;
    while (end < both - start && areEqual(wasCount - end - 1, isCount - end - 1)) {
      ++end;
    }
    for (std::size_t i = start; i < std::max(wasCount, isCount) - end; ++i) {
      json_object* const old = json_object_array_get_idx(was, i);
      json_object* const made = json_object_array_get_idx(is, i);
      if (i >= isCount - end) {
        found.push_back({Kind::kRemoved, path / Step(i), old, nullptr});
      } else if (i >= wasCount - end) {
        found.push_back({Kind::kAdded, path / Step(i), nullptr, made});
      } else {
        compare(path / Step(i), old, made);
      }
    }
  }
};

bool isSecret(const Path& path) {
  return std::any_of(path.steps.begin(), path.steps.end(),
                     [](const Step& step) { return !step.isIndex && isSecretName(step.name); });
}

std::string textOf(const Path& path, json_object* value) {
  return isSecret(path) ? kSecretShown : escaped(shown(View(value)), Escapes::kJson);
}

json_object* valueOf(const Path& path, json_object* value) {
  if (isSecret(path)) {
    return json_object_new_string(kSecretShown);
  }
  Result<Value> copied = hearth::parse(shown(View(value)));
  return copied ? copied->release() : nullptr;
}

}  // namespace

std::vector<Difference> differencesOf(json_object* was, json_object* is) {
  Comparison comparison;
  comparison.compare(Path(), was, is);
  return std::move(comparison.found);
}

std::string lineOf(const Difference& difference, const std::string& area, const Output& out) {
  const Path& path = difference.path;
  const std::string name = path.isRoot() ? "." : path.textOrPointer();
  const std::string place = (area.empty() ? "" : area + " ") + out.foreign(name) + ": ";
  switch (difference.kind) {
    case Kind::kAdded:
      return out.inked(Ink::kGood, "+ " + place + out.foreign(textOf(path, difference.is)));
    case Kind::kRemoved:
      return out.inked(Ink::kBad, "- " + place + out.foreign(textOf(path, difference.was)));
    default:
      return "~ " + place + out.foreign(textOf(path, difference.was)) + " -> " +
             out.foreign(textOf(path, difference.is));
  }
}

Handle objectOf(const Difference& difference, const std::string& area) {
  constexpr const char* kKinds[] = {"changed", "added", "removed"};
  const Path& path = difference.path;
  auto object = std::make_unique<TreeMapObject>(false);
  const auto add = [&](const char* name, json_object* value) {
    json_object_object_add(object->jobj, name, value);
  };
  add("area", area.empty() ? nullptr : json_object_new_string(area.c_str()));
  add("change", json_object_new_string(kKinds[static_cast<int>(difference.kind)]));
  add("path", path.isAddressable() ? json_object_new_string(path.text().c_str()) : nullptr);
  add("pointer", json_object_new_string(path.pointer().c_str()));
  if (difference.kind != Kind::kAdded) {
    add("was", valueOf(path, difference.was));
  }
  if (difference.kind != Kind::kRemoved) {
    add("is", valueOf(path, difference.is));
  }
  return object;
}

}  // namespace hearth::tool
