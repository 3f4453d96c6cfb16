// Searches a document for what references may name. The other half, following a reference, is in
// find.cc.
//
// The search walks down through the values in which schemas stand by the table of keywords, and
// makes an entry for each resource and each anchor. A schema with an identifier becomes a resource:
// what is below it belongs to that one. The entries are sorted by their hashes once the document is
// done. It happens at the first reference that needs it; a built-in metaschema is added the same
// way when a reference leads to it.
//
// Only then are the resources identified, which settles draft and vocabularies: a "$schema" may
// name a metaschema that stands in the same document, and that has to be found first.
#include "schema/resource/resources.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/json_members.h"
#include "schema/keywords/members.h"
#include "schema/resource/identifiers.h"
#include "schema/resource/metaschemas.h"
#include "schema/resource/uri.h"

namespace hearth::schema {

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
// tells the draft and the vocabularies. Otherwise it tells nothing; without one, a resource is read
// like the one around it.
void Resources::identify(ResourceIndex index) {
  json_object* const top = resources_[index].top;
  const std::string_view uri = textMember(top, "$schema");
  if (uri.data() == nullptr) {
    const Resource& around = resources_[resources_[index].parent];
    resources_[index].draft = around.draft;
    resources_[index].vocabularies = around.vocabularies;
    return;
  }
  if (isMetaschema(uri, resources_[index].draft)) {
    resources_[index].vocabularies = kAllVocabularies;
    return;
  }
  if (!ensureIndex()) {
    return;
  }
  const Referent metaschema = byUri(std::string(withoutFragment(uri)));
  if (metaschema.schema != nullptr && metaschema.schema != top) {
    resources_[index].draft = resources_[metaschema.resource].draft;
    readVocabularies(index, metaschema.schema);
  }
}

// A vocabulary that is not known but required makes the schema unusable; one that is not required
// says nothing.
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
      return tail != nullptr && strcmp(candidate.name, tail + 1) == 0;
    });
    if (strncmp(uri, "https://json-schema.org/draft/20", 32) == 0 && row != std::end(kRows)) {
      bits |= row->bits;
    } else if (json_object_get_boolean(required)) {
      effort_.stop(Trouble::kUnknownVocabulary);
    }
  }
  // In 2019-09 the unevaluated keywords belong to the applicators.
  if (resources_[index].draft == Draft::k2019 && (bits & kApplicator)) {
    bits |= kUnevaluated;
  }
  resources_[index].vocabularies = static_cast<uint8_t>(bits);
}

// Searches the schema's document the first time it is called. False when the effort is stopped.
bool Resources::ensureIndex() {
  if (!isIndexed_) {
    isIndexed_ = true;
    const std::string base = baseOf(0);
    addEntry(hashText(base), Kind::kUri, 0, resources_[0].top, nullptr);
    scan(resources_[0].top, 0, base, 0);
    sortEntries();
    for (ResourceIndex i = 0; i < resources_.size(); ++i) {  // the outer ones come first
      identify(i);
    }
  }
  return !effort_.isStopped();
}

// Looks at one schema found in a document, and at what is below it.
void Resources::scan(json_object* schema, ResourceIndex resource, const std::string& base,
                     unsigned depth) {
  if (!isObject(schema) || effort_.isStopped()) {
    return;
  }
  if (depth > kDeepestSchema) {
    effort_.stop(Trouble::kTooDeep);
    return;
  }
  const Draft draft = draftOf(schema, resources_[resource].draft);
  const std::string_view id = idOf(schema, draft);
  // An identifier that is only a fragment is an anchor.
  if (schema != resources_[resource].top && !withoutFragment(id).empty()) {
    scanResource(schema, resource, base, id, depth);
    return;
  }
  addAnchors(schema, resource, id);
  scanBelow(schema, resource, base, depth);
}

// Makes the schema a resource. Identifiers are limited in length, since each one below is resolved
// against all around it.
void Resources::scanResource(json_object* schema, ResourceIndex around, const std::string& base,
                             std::string_view id, unsigned depth) {
  if (id.size() + base.size() > kLongestUri || !effort_.spend((id.size() + base.size()) / 16)) {
    effort_.stop(Trouble::kLongIdentifier);
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

// Up to draft-07 an anchor is the fragment of an identifier. A dynamic anchor is a plain one too.
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
  if (anchor.data() != nullptr) {
    addEntry(hashAnchor(resource, anchor), Kind::kAnchor, resource, schema, anchor.data());
  }
  const std::string_view dynamic = textMember(schema, "$dynamicAnchor");
  if (dynamic.data() != nullptr && draft == Draft::k2020) {
    addEntry(hashAnchor(resource, dynamic), Kind::kAnchor, resource, schema, dynamic.data());
    addEntry(hashAnchor(resource, dynamic), Kind::kDynamicAnchor, resource, schema, dynamic.data());
  }
}

// Looks for schemas in the values of keywords. A list holds schemas and a map does under any name;
// a value that is no schema after all is passed over by scan().
void Resources::scanBelow(json_object* schema, ResourceIndex resource, const std::string& base,
                          unsigned depth) {
  json_object_object_foreach(schema, name, value) {
    const Keyword* const keyword = findKeyword(name, resources_[resource].draft);
    if (!effort_.spend(1)) {
      return;
    }
    if (keyword == nullptr || keyword->below == Below::kNothing) {
      continue;
    }
    const bool manyBelow =
        keyword->below == Below::kMap || keyword->below == Below::kMapOfSchemaOrNames;
    // A list may also hold names, as in "dependencies".
    if (json_object_get_type(value) == json_type_array) {
      for (std::size_t i = 0; i < json_object_array_length(value); ++i) {
        scan(json_object_array_get_idx(value, i), resource, base, depth + 1);
      }
    } else if (isObject(value) && manyBelow) {
      for (lh_entry* entry = firstMember(json_object_get_object(value)); entry != nullptr;
           entry = memberAfter(entry)) {
        scan(valueOfMember(entry), resource, base, depth + 1);
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

// By hash, and by resource where hashes are equal. qsort: std::sort would cost more code than the
// few entries are worth.
void Resources::sortEntries() {
  const auto order = [](const void* left, const void* right) {
    const Entry& a = *static_cast<const Entry*>(left);
    const Entry& b = *static_cast<const Entry*>(right);
    const bool less = a.hash != b.hash ? a.hash < b.hash : a.resource < b.resource;
    const bool equal = a.hash == b.hash && a.resource == b.resource;
    return less ? -1 : equal ? 0 : 1;
  };
  qsort(entries_.data(), entries_.size(), sizeof(Entry), order);
}

// Adds the built-in document that the URI belongs to. False when there is none, or when it has been
// added before, and the URI is then none of its resources.
bool Resources::loadBuiltIn(std::string_view uri) {
  Draft draft = unnamed_;
  if (!isMetaschema(uri, draft) || builtIns_[static_cast<std::size_t>(draft)] != nullptr) {
    return false;
  }
  json_object* const document = makeMetaschema(draft);
  if (document == nullptr) {
    return effort_.stop(Trouble::kNoMemory);
  }
  // It is a document of its own, with itself as its parent.
  builtIns_[static_cast<std::size_t>(draft)] = document;
  const auto index = static_cast<ResourceIndex>(resources_.size());
  resources_.push_back({document, index, draft, kAllVocabularies});
  const std::string base = baseOf(index);
  addEntry(hashText(base), Kind::kUri, index, document, nullptr);
  scan(document, index, base, 0);
  sortEntries();
  return !effort_.isStopped();
}

}  // namespace hearth::schema
