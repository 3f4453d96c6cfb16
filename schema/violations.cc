// The public operation over this folder's own validator: hands each violation on as C strings,
// which are the validator's and live as long as the call.
#include "hearth/violations.h"

#include "schema/validate.h"

namespace hearth {
namespace {

struct Listener {
  ViolationFound found;
  void* context;
};

bool passOn(void* context, schema::Violation& told) {
  const Listener& listener = *static_cast<const Listener*>(context);
  const Violation violation = {sizeof(Violation),           told.instanceLocation.c_str(),
                               told.schemaLocation.c_str(), told.keyword.c_str(),
                               told.member.c_str(),         told.message.c_str()};
  return listener.found(listener.context, violation);
}

}  // namespace

Conformance findViolations(json_object* instance, json_object* schema, unsigned int limit,
                           ViolationFound found, void* context) noexcept {
  Listener listener = {found, context};
  return schema::tellViolations(instance, schema,
                                {passOn, &listener, found != nullptr ? limit : 0U});
}

}  // namespace hearth
