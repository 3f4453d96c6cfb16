#include "areas.h"

#include <algorithm>
#include <chrono>

#include "messages.h"
#include "url_path.h"

namespace {

using hearth::Fault;
using hearth::View;

// How long a request waits for another one that holds its area.
constexpr std::chrono::seconds kPatience(2);

int statusOf(Fault fault) {
  switch (fault) {
    case Fault::kNoValue:
      return 404;
    case Fault::kNotStored:
      return 409;
    case Fault::kRefused:
      return 422;
    case Fault::kBusy:
      return 423;
    case Fault::kNoSession:
      return 401;
    default:
      return 500;
  }
}

Answer failed(const hearth::Failure& failure) {
  return {statusOf(failure.fault), "", failure.sentence};
}

const Answer kNotFound = {404, "", "nothing is at this path"};
const Answer kDoesNotFit = {409, "", "this cannot be done to the value at this path"};

bool namesSecret(const std::vector<std::string>& segments) {
  return std::any_of(segments.begin(), segments.end(), hearth::isSecretName);
}

std::string forClient(View value) {
  const hearth::Result<hearth::Value> shown = hearth::withoutSecrets(value);
  return shown ? hearth::toText(*shown) : "null";
}

// Merges the members of `changes` into an object, as a JSON merge patch does: null removes a
// member, an object merges with what is there, anything else replaces it.
void merge(View object, View changes) {
  for (const auto& [name, change] : hearth::members(changes)) {
    json_object* member = nullptr;
    json_object_object_get_ex(object.raw(), name.data(), &member);
    if (!change) {
      json_object_object_del(object.raw(), name.data());
    } else if (!change.isObject()) {
      json_object_object_add(object.raw(), name.data(), hearth::Value::sharing(change).release());
    } else {
      if (!View(member).isObject()) {
        member = hearth::newObject().release();
        json_object_object_add(object.raw(), name.data(), member);
      }
      merge(member, change);
    }
  }
}

// Makes the change in the copy. The status is a success's, or says why it cannot be made.
Answer apply(hearth::Change& change, const Target& target, const Wanted& wanted) {
  const bool isThere = target.kind == Target::Kind::kValue;
  const bool isRoot = target.kind == Target::Kind::kRoot;
  switch (wanted.action) {
    case Action::kReplace:
      if (isRoot) {
        return kDoesNotFit;
      }
      change.set(target.path, wanted.value);
      return {isThere ? 200 : 201, "", ""};
    case Action::kMerge: {
      const View object = hearth::find(change, target.path);
      const hearth::Result<hearth::Value> changes = hearth::copy(wanted.value);
      if (!isThere && !isRoot) {
        return kNotFound;
      }
      if (!object.isObject() || !changes || !View(*changes).isObject()) {
        return kDoesNotFit;
      }
      merge(object, *changes);
      return {200, "", ""};
    }
    case Action::kRemove:
      if (!isRoot && !change.remove(target.path)) {
        return kNotFound;
      }
      return isRoot ? kDoesNotFit : Answer{200, "", ""};
  }
  return kDoesNotFit;
}

}  // namespace

Answer readValue(API_TYPE_T area, const std::vector<std::string>& segments,
                 const hearth::Session& session) {
  if (namesSecret(segments)) {
    return {403, "", "secrets can be set but not read"};
  }
  const hearth::Result<hearth::AreaLock> database =
      hearth::AreaLock::take(area, "", session, kPatience);
  if (!database) {
    return failed(database.failure());
  }
  const Target target = findTarget(*database, segments);
  if (target.kind == Target::Kind::kNothing || target.kind == Target::Kind::kFree) {
    return kNotFound;
  }
  return {200, forClient(hearth::find(*database, target.path)), ""};
}

Answer changeValue(API_TYPE_T area, const Wanted& wanted, const hearth::Session& session) {
  hearth::Result<hearth::Change> change = hearth::Change::begin(area, "", session, kPatience);
  if (!change) {
    return failed(change.failure());
  }
  const Target target = findTarget(*change, wanted.segments);
  if (target.kind == Target::Kind::kNothing) {
    return kNotFound;
  }
  Answer answer = apply(*change, target, wanted);
  if (answer.status >= 400) {
    return answer;
  }
  const hearth::Result<void> valid = validateRequest(area, wanted, *change, session.key());
  if (!valid) {
    return failed(valid.failure());
  }
  if (wanted.action != Action::kRemove && !namesSecret(wanted.segments)) {
    answer.value = forClient(hearth::find(*change, target.path));
  }
  const hearth::Result<void> done = change->commit();
  return done ? answer : failed(done.failure());
}
