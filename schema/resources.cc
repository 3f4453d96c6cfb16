#include "schema/resources.h"

#include <algorithm>
#include <cstring>

#include "schema/metaschemas.h"
#include "schema/text.h"
#include "schema/uri.h"

namespace hearth {
namespace schema {
namespace {

// Schemas that only references can reach are looked for this deep in a document.
constexpr unsigned kDeepestSchema = 64;

uint32_t hashAddress(const void* address) {
  const auto bits = reinterpret_cast<uintptr_t>(address);
  return static_cast<uint32_t>(bits >> 4) * 2654435761U;
}

uint32_t hashAnchor(ResourceIndex resource, std::string_view name) {
  return hashText(name, resource * 2654435761U + 1);
}

json_object* memberOf(json_object* object, const char* name) {
  json_object* member = nullptr;
  return json_object_object_get_ex(object, name, &member) ? member : nullptr;
}

// The text of a member that is a string; no data() when it is none.
std::string_view textMember(json_object* object, const char* name) {
  json_object* const member = memberOf(object, name);
  return json_object_get_type(member) == json_type_string ? textOf(member) : std::string_view();
}

bool isObject(json_object* value) {
  return json_object_get_type(value) == json_type_object;
}

Draft draftOf(json_object* schema, Draft around) {
  Draft draft = around;
  const std::string_view uri = textMember(schema, "$schema");
  return uri.data() && isMetaschema(uri, &draft) ? draft : around;
}

// The identifier of a schema. Up to draft-07 one beside a reference does not count.
std::string_view idOf(json_object* schema, Draft draft) {
  const std::string_view id = textMember(schema, draft == Draft::k4 ? "id" : "$id");
  return id.data() && draft <= Draft::k7 && textMember(schema, "$ref").data() ? std::string_view()
                                                                              : id;
}

// One step of a JSON pointer: the member or element that the token names.
json_object* childOf(json_object* value, const std::string& token) {
  if (isObject(value)) {
    return memberOf(value, token.c_str());
  }
  if (json_object_get_type(value) != json_type_array || token.empty() || token.size() > 9 ||
      token.find_first_not_of("0123456789") != std::string::npos) {
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

Resources::Resources(json_object* schema, Draft unnamed, Effort& effort)
    : effort_(effort), unnamed_(unnamed) {
  resources_.push_back({schema, 0, unnamed, kAllVocabularies});
  if (isObject(schema)) {
    identify(0);
  }
}

Resources::~Resources() {
  for (json_object* document : builtIns_) {
    json_object_put(document);
  }
}

// A $schema that is no known metaschema may name one that the document itself holds, which then
// tells the draft and the vocabularies. Otherwise it tells nothing.
void Resources::identify(ResourceIndex index) {
  json_object* const top = resources_[index].top;
  const std::string_view uri = textMember(top, "$schema");
  if (!uri.data() || isMetaschema(uri, &resources_[index].draft) || !indexed()) {
    return;
  }
  const Target metaschema = byUri(std::string(withoutFragment(uri)));
  if (metaschema.schema && metaschema.schema != top) {
    resources_[index].draft = resources_[metaschema.resource].draft;
    readVocabularies(index, metaschema.schema);
  }
}

void Resources::readVocabularies(ResourceIndex index, json_object* metaschema) {
  struct Row {
    char name[18];
    uint8_t bits;
  };
  static constexpr Row kRows[] = {
      {"core", kCore},
      {"applicator", kApplicator},
      {"unevaluated", kUnevaluated},
      {"validation", kValidation},
      {"format", kFormatVocabulary},
      {"format-annotation", kFormatVocabulary},
      {"format-assertion", kFormatVocabulary | kFormatAssertion},
      {"content", kCore},
      {"meta-data", kCore},
  };
  json_object* const named = memberOf(metaschema, "$vocabulary");
  if (!isObject(named)) {
    return;
  }
  unsigned bits = 0;
  json_object_object_foreach(named, uri, required) {
    const char* const tail = strrchr(uri, '/');
    const Row* row = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& candidate) {
      return tail && strcmp(candidate.name, tail + 1) == 0;
    });
    if (strncmp(uri, "https://json-schema.org/draft/20", 32) == 0 && row != std::end(kRows)) {
      bits |= row->bits;
    } else if (json_object_get_boolean(required)) {
      effort_.stop(Trouble::kUnknownVocabulary);
    }
  }
  if (resources_[index].draft == Draft::k2019 && (bits & kApplicator)) {
    bits |= kUnevaluated;
  }
  resources_[index].vocabularies = static_cast<uint8_t>(bits);
}

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
// schema's size.
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
  while (length > 0) {
    const Resource& resource = resources_[chain[--length]];
    base = resolveUri(base, idOf(resource.top, resource.draft));
  }
  return base;
}

bool Resources::indexed() {
  if (!isIndexed_) {
    isIndexed_ = true;
    const std::string base = baseOf(0);
    addEntry(hashText(base), Kind::kUri, 0, resources_[0].top, nullptr);
    scan(resources_[0].top, 0, base, 0);
    sortEntries();
  }
  return !effort_.stopped();
}

void Resources::scan(json_object* schema, ResourceIndex resource, const std::string& base,
                     unsigned depth) {
  if (!isObject(schema) || effort_.stopped()) {
    return;
  }
  if (depth > kDeepestSchema) {
    effort_.stop(Trouble::kTooDeep);
    return;
  }
  const Draft draft = draftOf(schema, resources_[resource].draft);
  const std::string_view id = idOf(schema, draft);
  if (schema != resources_[resource].top && !withoutFragment(id).empty()) {
    scanResource(schema, resource, base, id, depth);
    return;
  }
  addAnchors(schema, resource, id);
  scanBelow(schema, resource, base, depth);
}

void Resources::scanResource(json_object* schema, ResourceIndex around, const std::string& base,
                             std::string_view id, unsigned depth) {
  if (id.size() + base.size() > kLongestUri || !effort_.spend((id.size() + base.size()) / 16)) {
    effort_.stop(Trouble::kBadValue);
    return;
  }
  const auto index = static_cast<ResourceIndex>(resources_.size());
  const Resource outer = resources_[around];
  resources_.push_back({schema, around, draftOf(schema, outer.draft), outer.vocabularies});
  const std::string own = resolveUri(base, id);
  addEntry(hashText(own), Kind::kUri, index, schema, nullptr);
  addEntry(hashAddress(schema), Kind::kTop, index, schema, nullptr);
  addAnchors(schema, index, id);
  scanBelow(schema, index, own, depth);
}

// Up to draft-07 an anchor is the fragment of an identifier.
void Resources::addAnchors(json_object* schema, ResourceIndex resource, std::string_view id) {
  const Draft draft = resources_[resource].draft;
  if (draft <= Draft::k7) {
    const std::string_view name = fragmentOf(id);
    if (!name.empty() && name[0] != '/') {
      addEntry(hashAnchor(resource, name), Kind::kAnchor, resource, schema, name.data());
    }
    return;
  }
  const std::string_view anchor = textMember(schema, "$anchor");
  if (anchor.data()) {
    addEntry(hashAnchor(resource, anchor), Kind::kAnchor, resource, schema, anchor.data());
  }
  const std::string_view dynamic = textMember(schema, "$dynamicAnchor");
  if (dynamic.data() && draft == Draft::k2020) {
    addEntry(hashAnchor(resource, dynamic), Kind::kAnchor, resource, schema, dynamic.data());
    addEntry(hashAnchor(resource, dynamic), Kind::kDynamicAnchor, resource, schema, dynamic.data());
  }
}

void Resources::scanBelow(json_object* schema, ResourceIndex resource, const std::string& base,
                          unsigned depth) {
  json_object_object_foreach(schema, name, value) {
    const Keyword* const keyword = findKeyword(name, resources_[resource].draft);
    if (!effort_.spend(1)) {
      return;
    }
    if (!keyword || keyword->below == Below::kNothing) {
      continue;
    }
    const bool manyBelow =
        keyword->below == Below::kMap || keyword->below == Below::kMapOfSchemaOrNames;
    if (json_object_get_type(value) == json_type_array) {
      for (size_t i = 0; i < json_object_array_length(value); ++i) {
        scan(json_object_array_get_idx(value, i), resource, base, depth + 1);
      }
    } else if (isObject(value) && manyBelow) {
      for (lh_entry* entry = lh_table_head(json_object_get_object(value)); entry;
           entry = lh_entry_next(entry)) {
        scan(static_cast<json_object*>(lh_entry_v(entry)), resource, base, depth + 1);
      }
    } else {
      scan(value, resource, base, depth + 1);
    }
  }
}

void Resources::addEntry(uint32_t hash, Kind kind, ResourceIndex resource, json_object* schema,
                         const char* name) {
  entries_.push_back({hash, kind, resource, schema, name});
}

void Resources::sortEntries() {
  std::sort(entries_.begin(), entries_.end(), [](const Entry& left, const Entry& right) {
    return left.hash != right.hash ? left.hash < right.hash : left.resource < right.resource;
  });
}

bool Resources::loadBuiltIn(std::string_view uri) {
  Draft draft = unnamed_;
  if (!isMetaschema(uri, &draft) || (loaded_ & draftBit(draft))) {
    return false;
  }
  loaded_ |= draftBit(draft);
  json_object* const document = makeMetaschema(draft);
  if (!document) {
    return effort_.stop(Trouble::kNoMemory);
  }
  builtIns_.push_back(document);
  const auto index = static_cast<ResourceIndex>(resources_.size());
  resources_.push_back({document, index, draft, kAllVocabularies});
  const std::string base = baseOf(index);
  addEntry(hashText(base), Kind::kUri, index, document, nullptr);
  scan(document, index, base, 0);
  sortEntries();
  return !effort_.stopped();
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
  return resource == 0 ? std::string() : baseOf(resource);
}

}  // namespace schema
}  // namespace hearth
