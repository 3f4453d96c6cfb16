// A place begins with one schema and takes in all that this one brings along: what it refers to,
// the parts of "allOf", and as alternatives those of "anyOf", "oneOf", "then" and "else". A step
// asks each of them which schemas it has for that member or element. Nothing is judged here; that
// is the validator's work, which is also asked whether a name matches a pattern.
#include "tools/document/schema_facts.h"

#include <algorithm>

#include "hearth/kit/validate.h"
#include "hearth/kit/write.h"

namespace hearth::tool {
namespace {

View keywordOf(View schema, const char* keyword) {
  json_object* value = nullptr;
  json_object_object_get_ex(schema.isObject() ? schema.raw() : nullptr, keyword, &value);
  return View(value);
}

bool isFalse(View schema) {
  return schema.type() == json_type_boolean && json_object_get_boolean(schema.raw()) == 0;
}

bool matches(std::string_view name, std::string_view pattern) {
  const Value schema = newObject();
  const Value text(json_object_new_string_len(name.data(), static_cast<int>(name.size())));
  return set(schema, "pattern", pattern) && validate(text, schema);
}

bool holdsText(View array, const std::string& text) {
  for (const View element : elements(array)) {
    if (element.type() == json_type_string && text == json_object_get_string(element.raw())) {
      return true;
    }
  }
  return false;
}

}  // namespace

View Saying::keyword(const char* name) const {
  return keywordOf(schema, name);
}

SchemaPlace::SchemaPlace(View schema) : root_(schema) {
  add(schema, false);
}

// Each schema is taken in once, so a reference that leads back to itself does no harm. A boolean
// schema says nothing.
void SchemaPlace::add(View schema, bool isAlternative) {
  const bool isThere = std::any_of(sayings_.begin(), sayings_.end(), [&](const Saying& saying) {
    return saying.schema.raw() == schema.raw();
  });
  if (!schema.isObject() || isThere) {
    return;
  }
  sayings_.push_back({schema, isAlternative});
  addReferred(schema, isAlternative);
  for (const View part : elements(keywordOf(schema, "allOf"))) {
    add(part, isAlternative);
  }
  for (const char* const keyword : {"anyOf", "oneOf"}) {
    for (const View part : elements(keywordOf(schema, keyword))) {
      add(part, true);
    }
  }
  add(keywordOf(schema, "then"), true);
  add(keywordOf(schema, "else"), true);
}

// References within the schema only: "#" and a JSON pointer.
void SchemaPlace::addReferred(View schema, bool isAlternative) {
  const char* const target = json_object_get_string(keywordOf(schema, "$ref").raw());
  if (target != nullptr && target[0] == '#' && (target[1] == '/' || target[1] == '\0')) {
    add(View(valueAtPointer(root_.raw(), target + 1)), isAlternative);
  }
}

// "additionalProperties" is about names that neither of the other two keywords knows.
void SchemaPlace::addMember(const Saying& saying, const std::string& name) {
  const View own = keywordOf(saying.keyword("properties"), name.c_str());
  bool isKnownName = own.isObject() || own.type() == json_type_boolean;
  add(own, saying.isAlternative);
  for (const Member& member : members(saying.keyword("patternProperties"))) {
    if (matches(name, member.name)) {
      isKnownName = true;
      add(member.value, saying.isAlternative);
    }
  }
  const View others = saying.keyword("additionalProperties");
  if (!isKnownName) {
    add(others, saying.isAlternative);
    isClosed_ = isClosed_ || (isFalse(others) && !saying.isAlternative);
  }
  isRequired_ =
      isRequired_ || (!saying.isAlternative && holdsText(saying.keyword("required"), name));
}

// The schemas of the first elements stand in "prefixItems", or in "items" if that is an array; that
// of all others in "items" and "additionalItems".
void SchemaPlace::addElement(const Saying& saying, std::size_t index) {
  const View items = saying.keyword("items");
  const View firsts = items.isArray() ? items : saying.keyword("prefixItems");
  if (index < elements(firsts).size()) {
    add(elements(firsts)[index], saying.isAlternative);
  } else {
    add(items.isArray() ? saying.keyword("additionalItems") : items, saying.isAlternative);
  }
}

SchemaPlace SchemaPlace::below(const Step& step) const {
  SchemaPlace place(root_, false);
  for (const Saying& saying : sayings_) {
    if (step.isIndex) {
      place.addElement(saying, step.index);
    } else {
      place.addMember(saying, step.name);
    }
  }
  return place;
}

View SchemaPlace::first(const char* keyword) const {
  for (const Saying& saying : sayings_) {
    const View value = saying.keyword(keyword);
    if (value && !saying.isAlternative) {
      return value;
    }
  }
  return {};
}

std::vector<std::string> SchemaPlace::names() const {
  std::vector<std::string> names;
  for (const Saying& saying : sayings_) {
    for (const Member& member : members(saying.keyword("properties"))) {
      if (std::count(names.begin(), names.end(), member.name) == 0) {
        names.emplace_back(member.name);
      }
    }
  }
  return names;
}

}  // namespace hearth::tool
