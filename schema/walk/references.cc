// The walk through $ref, $recursiveRef and $dynamicRef.
//
// A $ref always leads to the same schema. The other two may lead elsewhere each time: they are for
// schemas that are extended from outside, and mean "the outermost one that the walk has come
// through". So the frames are asked, from here to the root, which resources have an anchor of the
// right kind; the last one found, which is the outermost, counts.
#include <cstring>

#include "schema/resource/uri.h"
#include "schema/walk/questions.h"

namespace hearth::schema {
namespace {

bool hasTrueMember(json_object* schema, const char* name) {
  json_object* flag = nullptr;
  return json_object_object_get_ex(schema, name, &flag) &&
         json_object_get_type(flag) == json_type_boolean && json_object_get_boolean(flag);
}

// Goes on in the resource of the schema that was found.
bool conformsToReferent(Walker& walker, const Frame& frame, const Referent& referent,
                        json_object* reference, Id via, Marks* marks) {
  if (referent.schema == nullptr) {
    return walker.report().stop(frame, via, reference, Trouble::kUnresolved);
  }
  Frame next = frame.forSchema(referent.schema, via);
  next.resource = referent.resource;
  return walker.conforms(next, marks);
}

// Where a $recursiveRef leads. A resource takes part with $recursiveAnchor at its top; if the one
// that the reference names does not, the reference is a plain one.
Referent recursiveReferent(Walker& walker, const Frame& frame, json_object* reference) {
  Resources& resources = walker.resources();
  Referent referent = resources.resolve(reference, frame.resource);
  if (referent.schema == nullptr || !hasTrueMember(referent.schema, "$recursiveAnchor")) {
    return referent;
  }
  for (const Frame* on = &frame; on != nullptr && walker.effort().spend(1); on = on->outer) {
    json_object* const top = resources.at(on->resource).top;
    if (hasTrueMember(top, "$recursiveAnchor")) {
      referent = {top, on->resource};
    }
  }
  return referent;
}

// Where a $dynamicRef leads. A resource takes part with a $dynamicAnchor of the name that the
// reference ends in; if the one that the reference leads to has none, the reference is a plain one.
Referent dynamicReferent(Walker& walker, const Frame& frame, json_object* reference) {
  Resources& resources = walker.resources();
  Referent referent = resources.resolve(reference, frame.resource);
  const std::string name = percentDecoded(fragmentOf(json_object_get_string(reference)));
  if (referent.schema == nullptr ||
      resources.dynamicAnchor(referent.resource, name).schema != referent.schema) {
    return referent;
  }
  ResourceIndex previous = referent.resource;  // many frames in a row are in one resource
  for (const Frame* on = &frame; on != nullptr && walker.effort().spend(1); on = on->outer) {
    if (on->resource != previous) {
      previous = on->resource;
      const Referent candidate = resources.dynamicAnchor(on->resource, name);
      referent = candidate.schema != nullptr ? candidate : referent;
    }
  }
  return referent;
}

}  // namespace

bool conformsToReference(Walker& walker, const Frame& frame, json_object* reference, Marks* marks) {
  return conformsToReferent(walker, frame, walker.resources().resolve(reference, frame.resource),
                            reference, Id::kRef, marks);
}

bool conformsToDynamicReference(Walker& walker, const Frame& frame, json_object* reference,
                                Marks* marks) {
  const bool isRecursive = walker.draftAt(frame) == Draft::k2019;
  const Referent referent = isRecursive ? recursiveReferent(walker, frame, reference)
                                        : dynamicReferent(walker, frame, reference);
  return conformsToReferent(walker, frame, referent, reference,
                            isRecursive ? Id::kRecursiveRef : Id::kDynamicRef, marks);
}

}  // namespace hearth::schema
