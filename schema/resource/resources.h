// Where references lead. A document holds one schema resource, or several: a schema below with an
// identifier of its own starts another one, with its own base URI, its own anchors and perhaps its
// own draft. References of the form "#/a/b" are followed from the top of their resource and need
// nothing else. The first reference of another form has the whole document searched once for
// identifiers and anchors.
#ifndef HEARTH_SCHEMA_RESOURCE_RESOURCES_H
#define HEARTH_SCHEMA_RESOURCE_RESOURCES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "schema/effort.h"
#include "schema/keywords/keywords.h"

namespace hearth::schema {

using ResourceIndex = uint32_t;

// Schemas that only references can reach are looked for this deep in a document.
constexpr unsigned kDeepestSchema = 64;

struct Resource {
  json_object* top;
  ResourceIndex parent;  // the resource around it; its own index at the top of a document
  Draft draft;
  uint8_t vocabularies;
};

// What a reference leads to.
struct Referent {
  json_object* schema = nullptr;  // null: it leads nowhere
  ResourceIndex resource = 0;
};

class Resources {
 public:
  // The schema is resource 0.
  Resources(json_object* schema, Draft unnamed, Effort& effort);
  ~Resources();
  Resources(const Resources&) = delete;
  Resources& operator=(const Resources&) = delete;

  [[nodiscard]] const Resource& at(ResourceIndex index) const { return resources_[index]; }

  // The resource that a schema found inside `around` belongs to: its own if it starts one.
  [[nodiscard]] ResourceIndex of(json_object* schema, ResourceIndex around);

  // Where a reference met in resource `from` leads.
  [[nodiscard]] Referent resolve(json_object* reference, ResourceIndex from);

  // The schema with this dynamic anchor in this resource.
  [[nodiscard]] Referent dynamicAnchor(ResourceIndex resource, std::string_view name);

  // The document that the resource is in: gives its top, and answers the URI of a built-in one or
  // "" for the schema given.
  [[nodiscard]] std::string documentOf(ResourceIndex resource, json_object*& top) const;

 private:
  // What a document's search has found, by a hash of what it is looked up by: a resource by its URI
  // or by the address of its top, an anchor by its resource and name.
  enum class Kind : uint8_t { kUri, kTop, kAnchor, kDynamicAnchor };
  struct Entry {
    uint32_t hash;
    Kind kind;
    ResourceIndex resource;
    json_object* schema;
    const char* name;  // of an anchor; it ends at a NUL
  };
  // A reference that was followed lately.
  struct Followed {
    std::string_view reference;
    ResourceIndex from;
    Referent referent;
  };
  static constexpr std::size_t kFollowed = 32;

  void identify(ResourceIndex index);
  void readVocabularies(ResourceIndex index, json_object* metaschema);
  std::string baseOf(ResourceIndex index) const;
  bool ensureIndex();
  void scan(json_object* schema, ResourceIndex resource, const std::string& base, unsigned depth);
  void scanBelow(json_object* schema, ResourceIndex resource, const std::string& base,
                 unsigned depth);
  void scanResource(json_object* schema, ResourceIndex around, const std::string& base,
                    std::string_view id, unsigned depth);
  void addAnchors(json_object* schema, ResourceIndex resource, std::string_view id);
  void addEntry(uint32_t hash, Kind kind, ResourceIndex resource, json_object* schema,
                const char* name);
  void sortEntries();
  bool loadBuiltIn(std::string_view uri);

  template <typename Matches>
  const Entry* find(uint32_t hash, Kind kind, Matches matches) const;
  Referent anchor(Kind kind, ResourceIndex resource, std::string_view name);
  Referent byUri(const std::string& uri);
  Referent byFragment(Referent from, std::string_view fragment);
  Referent byPointer(Referent from, std::string_view pointer);
  Referent follow(std::string_view reference, ResourceIndex from);

  Effort& effort_;
  Draft unnamed_;
  bool isIndexed_ = false;
  std::vector<Resource> resources_;
  std::vector<Entry> entries_;     // sorted by hash
  json_object* builtIns_[5] = {};  // owned: the metaschema of each Draft, once it is asked for
  Followed followed_[kFollowed] = {};
};

}  // namespace hearth::schema

#endif
