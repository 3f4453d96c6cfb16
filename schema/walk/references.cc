// The walk through $ref, $recursiveRef and $dynamicRef. The last two may lead to another place each
// time: they ask the resources that the walk has come through, the outermost one first.
#include <cstring>

#include "schema/resource/uri.h"
#include "schema/walk/walker.h"

namespace hearth {
namespace schema {
namespace {

bool hasTrueMember(json_object* schema, const char* name) {
  json_object* flag = nullptr;
  return json_object_object_get_ex(schema, name, &flag) &&
         json_object_get_type(flag) == json_type_boolean && json_object_get_boolean(flag);
}

}  // namespace

bool Walker::enterTarget(const Place& place, const Target& target, json_object* reference, Id via,
                         Marks* marks) {
  if (!target.schema) {
    return stop(place, via, reference, Trouble::kUnresolved);
  }
  Place next = place.same(target.schema, via);
  next.resource = target.resource;
  return conforms(next, marks);
}

bool Walker::followReference(const Place& place, json_object* reference, Marks* marks) {
  return enterTarget(place, resources_.resolve(reference, place.resource), reference, Id::kRef,
                     marks);
}

bool Walker::followDynamic(const Place& place, json_object* reference, Marks* marks) {
  const bool recursive = draftAt(place) == Draft::k2019;
  const Target target =
      recursive ? recursiveTarget(place, reference) : dynamicTarget(place, reference);
  return enterTarget(place, target, reference, recursive ? Id::kRecursiveRef : Id::kDynamicRef,
                     marks);
}

// Of the resources on the way here with $recursiveAnchor at their top, the outermost, if the one
// that the reference names is such a resource.
Target Walker::recursiveTarget(const Place& place, json_object* reference) {
  Target target = resources_.resolve(reference, place.resource);
  if (!target.schema || !hasTrueMember(target.schema, "$recursiveAnchor")) {
    return target;
  }
  for (const Place* on = &place; on && effort().spend(1); on = on->outer) {
    json_object* const top = resources_.at(on->resource).top;
    if (hasTrueMember(top, "$recursiveAnchor")) {
      target = {top, on->resource};
    }
  }
  return target;
}

// The same for the anchor that the reference names, if it names a dynamic one.
Target Walker::dynamicTarget(const Place& place, json_object* reference) {
  Target target = resources_.resolve(reference, place.resource);
  const std::string name = percentDecoded(fragmentOf(json_object_get_string(reference)));
  if (!target.schema || resources_.dynamicAnchor(target.resource, name).schema != target.schema) {
    return target;
  }
  ResourceIndex previous = target.resource;
  for (const Place* on = &place; on && effort().spend(1); on = on->outer) {
    if (on->resource != previous) {
      previous = on->resource;
      const Target candidate = resources_.dynamicAnchor(on->resource, name);
      target = candidate.schema ? candidate : target;
    }
  }
  return target;
}

}  // namespace schema
}  // namespace hearth
