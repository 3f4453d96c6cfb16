#include "areas.h"

#include <algorithm>

#include "area_turn.h"
#include "bodies.h"
#include "json_patch.h"
#include "messages.h"
#include "server_limits.h"
#include "url_path.h"

namespace {

using hearth::Failure;
using hearth::View;

// How many broken rules a refusal tells, for a form that marks each field.
constexpr unsigned int kViolations = 50;

// {"error": sentence, "violations": [{path, keyword, message}]}
Reply failed(const Failure& failure) {
  const hearth::Value message = hearth::newObject();
  static_cast<void>(hearth::set(message, "error", failure.sentence));
  if (failure.fault == hearth::Fault::kRefused) {
    hearth::Value violations = hearth::newArray();
    for (const hearth::BrokenRule& rule : failure.broken) {
      const hearth::Value one = hearth::newObject();
      static_cast<void>(hearth::set(one, "path", rule.place));
      static_cast<void>(hearth::set(one, "keyword", rule.keyword));
      static_cast<void>(hearth::set(one, "message", rule.sentence));
      static_cast<void>(hearth::append(violations, one));
    }
    static_cast<void>(hearth::set(message, "violations", std::move(violations)));
  }
  return jsonReply(statusOf(failure.fault), message);
}

Reply notFound() {
  return refusal(404, "nothing is at this path");
}

Reply doesNotFit() {
  return refusal(409, "this cannot be done to the value at this path");
}

bool namesSecret(const std::vector<std::string>& segments) {
  return std::any_of(segments.begin(), segments.end(), hearth::isSecretName);
}

Reply forClient(int status, View value) {
  const hearth::Result<hearth::Value> shown = hearth::withoutSecrets(value);
  return shown ? jsonReply(status, *shown) : failed(shown.failure());
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

Reply withStatus(int status) {
  Reply reply;
  reply.status = status;
  return reply;
}

Reply mergeAt(const hearth::Change& change, const Target& target, View value) {
  if (target.kind == Target::Kind::kFree) {
    return notFound();
  }
  const View object = hearth::find(change, target.path);
  const hearth::Result<hearth::Value> changes = hearth::copy(value);
  if (!object.isObject() || !changes || !View(*changes).isObject()) {
    return doesNotFit();
  }
  merge(object, *changes);
  return withStatus(200);
}

Reply patchAt(const hearth::Change& change, const Target& target, View steps) {
  if (target.kind != Target::Kind::kRoot) {
    return refusal(409, "a JSON patch is for a whole area");
  }
  const PatchResult result = applyPatch(change, steps);
  return result.status < 400 ? withStatus(204) : refusal(result.status, result.problem);
}

// Makes the change in the copy. The status is a success's, or says why it cannot be made.
Reply apply(hearth::Change& change, const Target& target, const Wanted& wanted) {
  const bool isRoot = target.kind == Target::Kind::kRoot;
  switch (wanted.action) {
    case Action::kReplace:
      if (isRoot) {
        return doesNotFit();
      }
      change.set(target.path, wanted.value);
      return withStatus(target.kind == Target::Kind::kValue ? 200 : 201);
    case Action::kMerge:
      return mergeAt(change, target, wanted.value);
    case Action::kRemove:
      if (isRoot) {
        return doesNotFit();
      }
      return change.remove(target.path) ? withStatus(204) : notFound();
    case Action::kPatch:
      return patchAt(change, target, wanted.value);
  }
  return doesNotFit();
}

// Why the changed document is not saved; a status below 400 when it may be. The schema of the area
// is compared by the commit.
Reply judge(API_TYPE_T area, const Wanted& wanted, View usersBefore, hearth::Change& change,
            const Who& who) {
  if (area == API_GATEWAY) {
    const hearth::Result<void> users =
        settleUsers(usersBefore, hearth::find(change, "users"), who.role);
    if (!users) {
      return refusal(403, users.failure().sentence);
    }
  }
  if (hearth::toText(change).size() > limits::kDocument) {
    return refusal(413, "the area would become too large");
  }
  const hearth::Result<void> valid = validateRequest(area, wanted, change, who.session.key());
  return valid ? Reply() : failed(valid.failure());
}

}  // namespace

Reply readValue(API_TYPE_T area, const std::vector<std::string>& segments,
                const hearth::Session& session) {
  if (namesSecret(segments)) {
    return refusal(403, "secrets can be set but not read");
  }
  const AreaTurn turn(area);
  const auto database = hearth::AreaLock::take(area, "", session, turn.patience());
  if (!database) {
    return failed(database.failure());
  }
  const Target target = findTarget(*database, segments);
  if (target.kind != Target::Kind::kValue && target.kind != Target::Kind::kRoot) {
    return notFound();
  }
  return forClient(200, hearth::find(*database, target.path));
}

Reply readSchema(API_TYPE_T area) {
  const auto schema = hearth::parseFile(hearth::databaseSchemaFile(area).value_or(""));
  if (!schema) {
    return schema.failure().fault == hearth::Fault::kNoFile
               ? refusal(404, "the area has no schema")
               : refusal(503, "the area's schema cannot be read");
  }
  return jsonReply(200, *schema);
}

Reply changeValue(API_TYPE_T area, const Wanted& wanted, const Who& who) {
  const AreaTurn turn(area);
  auto change = hearth::Change::begin(area, "", who.session, turn.patience());
  if (!change) {
    return failed(change.failure());
  }
  const Target target = findTarget(*change, wanted.segments);
  if (target.kind == Target::Kind::kNothing) {
    return notFound();
  }
  const hearth::Result<hearth::Value> users = hearth::copy(hearth::find(*change, "users"));
  Reply reply = apply(*change, target, wanted);
  if (reply.status >= 400 || !users) {
    return reply;
  }
  Reply judged = judge(area, wanted, *users, *change, who);
  if (judged.status >= 400) {
    return judged;
  }
  if (reply.status != 204 && !namesSecret(wanted.segments)) {
    reply = forClient(reply.status, hearth::find(*change, target.path));
  }
  hearth::ChangeOptions options;
  options.limit = kViolations;
  options.isStrict = true;
  const hearth::Result<void> done = change->commit(options);
  return done ? reply : failed(done.failure());
}
