// Following references: by URI and anchor through the entries that the search has left, by JSON
// pointer straight through the document.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "schema/resource/identifiers.h"
#include "schema/resource/resources.h"
#include "schema/resource/uri.h"

namespace hearth {
namespace schema {
namespace {

// One step of a JSON pointer: the member or element that the token names.
json_object* childOf(json_object* value, const std::string& token) {
  if (isObject(value)) {
    return memberOf(value, token.c_str());
  }
  if (json_object_get_type(value) != json_type_array || token.empty() || token.size() > 9 ||
      strspn(token.c_str(), "0123456789") != token.size()) {
    return nullptr;
  }
  return json_object_array_get_idx(value, strtoul(token.c_str(), nullptr, 10));
}

std::string unescaped(std::string_view token) {
  std::string out;
  for (size_t i = 0; i < token.size(); ++i) {
    const bool escape = token[i] == '~' && i + 1 < token.size();
    out += !escape ? token[i] : token[i + 1] == '1' ? '/' : '~';
    i += escape;
  }
  return out;
}

}  // namespace

// The first entry of that hash and kind that also matches otherwise.
template <typename Matches>
const Resources::Entry* Resources::find(uint32_t hash, Kind kind, Matches matches) const {
  auto entry = std::lower_bound(
      entries_.begin(), entries_.end(), hash,
      [](const Entry& candidate, uint32_t wanted) { return candidate.hash < wanted; });
  for (; entry != entries_.end() && entry->hash == hash && effort_.spend(1); ++entry) {
    if (entry->kind == kind && matches(*entry)) {
      return &*entry;
    }
  }
  return nullptr;
}

Target Resources::byUri(const std::string& uri) {
  const Entry* const entry = find(hashText(uri), Kind::kUri, [&](const Entry& candidate) {
    return effort_.spend(uri.size() / 16) && baseOf(candidate.resource) == uri;
  });
  return entry ? Target{entry->schema, entry->resource} : Target{};
}

Target Resources::anchor(Kind kind, ResourceIndex resource, std::string_view name) {
  if (!indexed()) {
    return {};
  }
  const Entry* const entry = find(hashAnchor(resource, name), kind, [&](const Entry& candidate) {
    return candidate.resource == resource && name == candidate.name;
  });
  return entry ? Target{entry->schema, resource} : Target{};
}

Target Resources::dynamicAnchor(ResourceIndex resource, std::string_view name) {
  return anchor(Kind::kDynamicAnchor, resource, name);
}

ResourceIndex Resources::of(json_object* schema, ResourceIndex around) {
  if (!isObject(schema) || schema == resources_[around].top ||
      !(textMember(schema, "$id").data() || textMember(schema, "id").data())) {
    return around;
  }
  const Draft draft = draftOf(schema, resources_[around].draft);
  if (withoutFragment(idOf(schema, draft)).empty() || !indexed()) {
    return around;
  }
  const Entry* const entry = find(hashAddress(schema), Kind::kTop, [&](const Entry& candidate) {
    return candidate.schema == schema;
  });
  return entry ? entry->resource : around;
}

// The base URI of a resource is made anew each time: kept for all, it could take the square of the
// schema's size. It is not whole when the effort stops.
std::string Resources::baseOf(ResourceIndex index) const {
  ResourceIndex chain[kDeepestSchema + 2];
  size_t length = 0;
  for (;; index = resources_[index].parent) {
    chain[length++] = index;
    if (resources_[index].parent == index || length == kDeepestSchema + 2) {
      break;
    }
  }
  std::string base;
  while (length > 0 && effort_.spend(1 + base.size() / 4)) {
    const Resource& resource = resources_[chain[--length]];
    base = resolveUri(base, idOf(resource.top, resource.draft));
  }
  return base;
}

Target Resources::byFragment(Target from, std::string_view fragment) {
  if (fragment.empty()) {
    return from;
  }
  const std::string decoded = percentDecoded(fragment);
  if (decoded[0] == '/') {  // the walk itself enters a resource that starts where the pointer ends
    return byPointer(from, decoded);
  }
  return anchor(Kind::kAnchor, from.resource, decoded);
}

Target Resources::byPointer(Target from, std::string_view pointer) {
  while (!pointer.empty() && from.schema) {
    pointer.remove_prefix(1);
    const std::string_view token = pointer.substr(0, pointer.find('/'));
    pointer.remove_prefix(token.size());
    from.resource = of(from.schema, from.resource);
    from.schema = childOf(from.schema, unescaped(token));
  }
  return from;
}

Target Resources::follow(std::string_view reference, ResourceIndex from) {
  if (reference.size() > kLongestUri) {
    return {};
  }
  if (!reference.empty() && reference[0] == '#') {
    return byFragment({resources_[from].top, from}, reference.substr(1));
  }
  if (!indexed()) {
    return {};
  }
  const std::string uri = resolveUri(baseOf(from), reference);
  Target target = byUri(uri);
  if (!target.schema && loadBuiltIn(uri)) {
    target = byUri(uri);
  }
  return target.schema ? byFragment(target, fragmentOf(reference)) : target;
}

// Many references lead to few places, so the last ones are remembered by their text.
Target Resources::resolve(json_object* reference, ResourceIndex from) {
  const std::string_view text = textOf(reference);
  const unsigned end = text.empty() ? 0 : static_cast<unsigned char>(text.back());
  const unsigned middle = text.empty() ? 0 : static_cast<unsigned char>(text[text.size() / 2]);
  Followed& followed = followed_[(text.size() * 7 + size_t{end} * 5 + middle + from) % kFollowed];
  if (followed.from != from || !followed.target.schema || followed.reference != text) {
    const Target target = effort_.spend(10 + text.size()) ? follow(text, from) : Target{};
    followed = {text, from, target};
  }
  return followed.target;
}

std::string Resources::documentOf(ResourceIndex resource, json_object** top) const {
  while (resources_[resource].parent != resource) {
    resource = resources_[resource].parent;
  }
  *top = resources_[resource].top;
  return resource == 0 ? std::string()
                       : std::string(withoutFragment(idOf(*top, resources_[resource].draft)));
}

}  // namespace schema
}  // namespace hearth
