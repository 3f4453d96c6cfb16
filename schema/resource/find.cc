// Follows references: by URI and anchor through the index that resources.cc makes, by JSON pointer
// straight through the document.
//
// A reference of the form "#/a/b" needs no index, and most schemas have no others. Any other one is
// resolved against the base URI of its resource, looked up without its fragment, and the fragment
// is then followed inside the resource that was found: as a pointer or as the name of an anchor.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "schema/resource/identifiers.h"
#include "schema/resource/resources.h"
#include "schema/resource/uri.h"

namespace hearth::schema {
namespace {

// One step of a JSON pointer: the member or element that it names, or null.
json_object* childOf(json_object* value, const std::string& step) {
  if (isObject(value)) {
    return memberOf(value, step.c_str());
  }
  if (json_object_get_type(value) != json_type_array || step.empty() || step.size() > 9 ||
      strspn(step.c_str(), "0123456789") != step.size()) {
    return nullptr;
  }
  return json_object_array_get_idx(value, strtoul(step.c_str(), nullptr, 10));
}

// "~1" stands for a '/', "~0" for a '~'.
std::string unescaped(std::string_view step) {
  std::string out;
  for (std::size_t i = 0; i < step.size(); ++i) {
    const bool isEscape = step[i] == '~' && i + 1 < step.size();
    out += !isEscape ? step[i] : step[i + 1] == '1' ? '/' : '~';
    i += isEscape;
  }
  return out;
}

}  // namespace

// The first entry of that hash and kind that `matches` too. Null when there is none.
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

Referent Resources::byUri(const std::string& uri) {
  // Only the hash is kept, so the base of each candidate is made anew and compared.
  const Entry* const entry = find(hashText(uri), Kind::kUri, [&](const Entry& candidate) {
    return effort_.spend(uri.size() / 16) && baseOf(candidate.resource) == uri;
  });
  return entry != nullptr ? Referent{entry->schema, entry->resource} : Referent{};
}

// An anchor is looked for in its own resource only.
Referent Resources::anchor(Kind kind, ResourceIndex resource, std::string_view name) {
  if (!ensureIndex()) {
    return {};
  }
  const Entry* const entry = find(hashAnchor(resource, name), kind, [&](const Entry& candidate) {
    return candidate.resource == resource && name == candidate.name;
  });
  return entry != nullptr ? Referent{entry->schema, resource} : Referent{};
}

Referent Resources::dynamicAnchor(ResourceIndex resource, std::string_view name) {
  return anchor(Kind::kDynamicAnchor, resource, name);
}

// Nearly all schemas have no identifier, so that is asked first, by both names that one may have.
ResourceIndex Resources::of(json_object* schema, ResourceIndex around) {
  if (!isObject(schema) || schema == resources_[around].top ||
      (textMember(schema, "$id").data() == nullptr && textMember(schema, "id").data() == nullptr)) {
    return around;
  }
  const Draft draft = draftOf(schema, resources_[around].draft);
  if (withoutFragment(idOf(schema, draft)).empty() || !ensureIndex()) {
    return around;
  }
  const Entry* const entry = find(hashAddress(schema), Kind::kTop, [&](const Entry& candidate) {
    return candidate.schema == schema;
  });
  return entry != nullptr ? entry->resource : around;
}

// The base URI of a resource is made anew each time, from the identifiers of the resources around
// it, the outermost first: kept for all, it could take the square of the schema's size. It is not
// whole when the effort stops.
std::string Resources::baseOf(ResourceIndex index) const {
  // The resources around, from the inside out.
  ResourceIndex chain[kDeepestSchema + 2];
  std::size_t length = 0;
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

// A fragment is a pointer when it begins with '/', and else the name of an anchor. An empty one is
// the resource itself.
Referent Resources::byFragment(Referent from, std::string_view fragment) {
  if (fragment.empty()) {
    return from;
  }
  const std::string decoded = percentDecoded(fragment);
  if (decoded[0] == '/') {
    return byPointer(from, decoded);
  }
  return anchor(Kind::kAnchor, from.resource, decoded);
}

// Each step enters the resource that starts at the schema it leaves. Where the pointer ends, the
// walk does so itself.
Referent Resources::byPointer(Referent from, std::string_view pointer) {
  while (!pointer.empty() && from.schema != nullptr) {
    pointer.remove_prefix(1);
    const std::string_view step = pointer.substr(0, pointer.find('/'));
    pointer.remove_prefix(step.size());
    from.resource = of(from.schema, from.resource);
    from.schema = childOf(from.schema, unescaped(step));
  }
  return from;
}

Referent Resources::follow(std::string_view reference, ResourceIndex from) {
  if (reference.size() > kLongestUri) {
    return {};
  }
  if (!reference.empty() && reference[0] == '#') {
    return byFragment({resources_[from].top, from}, reference.substr(1));
  }
  if (!ensureIndex()) {
    return {};
  }
  const std::string uri = resolveUri(baseOf(from), reference);
  // What the document itself holds comes before a built-in metaschema of that name.
  Referent referent = byUri(uri);
  if (referent.schema == nullptr && loadBuiltIn(uri)) {
    referent = byUri(uri);
  }
  return referent.schema != nullptr ? byFragment(referent, fragmentOf(reference)) : referent;
}

// Many references in an instance's walk are the same few, so the last ones are remembered by their
// text. The place of one in followed_ comes from its length, two of its characters and `from`.
Referent Resources::resolve(json_object* reference, ResourceIndex from) {
  const std::string_view text = textOf(reference);
  const unsigned end = text.empty() ? 0 : static_cast<unsigned char>(text.back());
  const unsigned middle = text.empty() ? 0 : static_cast<unsigned char>(text[text.size() / 2]);
  Followed& followed =
      followed_[(text.size() * 7 + std::size_t{end} * 5 + middle + from) % kFollowed];
  if (followed.from != from || followed.referent.schema == nullptr || followed.reference != text) {
    const Referent referent = effort_.spend(10 + text.size()) ? follow(text, from) : Referent{};
    followed = {text, from, referent};
  }
  return followed.referent;
}

// Goes up to the resource that is its own parent, the top of a document.
std::string Resources::documentOf(ResourceIndex resource, json_object*& top) const {
  while (resources_[resource].parent != resource) {
    resource = resources_[resource].parent;
  }
  top = resources_[resource].top;
  return resource == 0 ? std::string()
                       : std::string(withoutFragment(idOf(top, resources_[resource].draft)));
}

}  // namespace hearth::schema
