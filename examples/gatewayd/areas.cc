#include "examples/gatewayd/areas.h"

#include <chrono>
#include <optional>
#include <thread>

#include "examples/gatewayd/messages.h"
#include "examples/gatewayd/redaction.h"
#include "examples/gatewayd/url_path.h"

namespace {

struct PutJson {
  void operator()(json_object* value) const { json_object_put(value); }
};
using Json = std::unique_ptr<json_object, PutJson>;

// The whole database of an area. hearth refuses a held area at once; another request of the same
// session holds it for milliseconds only, so a few more tries spare the client one.
class Database {
 public:
  Database(API_TYPE_T area, const std::string& key) {
    constexpr int kTries = 200;
    for (int i = 0; i < kTries; ++i) {
      lock_.emplace(area, "", key);
      if (*lock_) {
        return;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  explicit operator bool() const { return lock_.has_value() && *lock_ && value() != nullptr; }
  TreeMapObject& operator*() const { return *lock_->operator->(); }
  TreeMapObject* operator->() const { return lock_->operator->(); }
  json_object* value() const { return lock_->operator->()->jobj; }
  [[nodiscard]] bool save() { return lock_->save(); }

 private:
  std::optional<AreaLock> lock_;
};

Answer noDatabase(API_TYPE_T area, const Databases& databases) {
  const LOCALDB_HANDLER* const handler = LocalDbCtrl::getDBByKey(databases.key().c_str());
  if (handler != nullptr &&
      __atomic_load_n(&handler->state[area], __ATOMIC_ACQUIRE) == LDB_LOCKED) {
    return {Outcome::kHeld, "", "another request holds this area; try again"};
  }
  return {Outcome::kBroken, "", "this area's database cannot be read"};
}

bool namesSecret(const std::vector<std::string>& segments) {
  for (const std::string& segment : segments) {
    if (isSecret(segment)) {
      return true;
    }
  }
  return false;
}

// The value at a path as text, or "null"; secrets are left out of it.
std::string show(const TreeMapObject& database, const std::string& path) {
  const Handle copy(database.clone(path.c_str()));
  if (copy == nullptr) {
    return "null";
  }
  removeSecrets(copy->jobj);
  return json_object_to_json_string_ext(copy->jobj,
                                        JSON_C_TO_STRING_PLAIN | JSON_C_TO_STRING_NOSLASHESCAPE);
}

// Puts a value into a database.
bool put(TreeMapObject& database, const Target& target, json_object* value) {
  return JsonData::setJObj(database.jobj, target.path.c_str(), value) == 0;
}

// Merges the members of `changes` into the object at the target, as a JSON merge patch does: null
// removes a member, an object merges with what is there, anything else replaces it.
bool merge(json_object* object, json_object* changes) {
  json_object_object_foreach(changes, name, change) {
    json_object* member = nullptr;
    json_object_object_get_ex(object, name, &member);
    if (change == nullptr) {
      json_object_object_del(object, name);
    } else if (json_object_is_type(change, json_type_object) == 0) {
      if (json_object_object_add(object, name, json_object_get(change)) != 0) {
        return false;
      }
    } else {
      if (json_object_is_type(member, json_type_object) == 0) {
        member = json_object_new_object();
        json_object_object_add(object, name, member);
      }
      if (!merge(member, change)) {
        return false;
      }
    }
  }
  return true;
}

// Makes the change; an outcome other than kDone and kMade says why it cannot be made.
Outcome apply(TreeMapObject& database, const Change& change) {
  const Target target = findTarget(database, change.segments);
  if (target.kind == Target::Kind::kNothing) {
    return Outcome::kNotFound;
  }
  const bool isThere = target.kind == Target::Kind::kValue;
  switch (change.action) {
    case Action::kReplace: {
      // A copy: what the request has sent must not be shared by two databases.
      const Json copy(change.value != nullptr ? JsonData::cloneObject(change.value) : nullptr);
      if (target.kind == Target::Kind::kRoot || !put(database, target, copy.get())) {
        return Outcome::kWrongType;
      }
      return isThere ? Outcome::kDone : Outcome::kMade;
    }
    case Action::kMerge: {
      if (target.kind == Target::Kind::kFree) {
        return Outcome::kNotFound;
      }
      const Handle object(database.get(target.path.c_str()));
      const Json copy(JsonData::cloneObject(change.value));
      const bool fits = object != nullptr && copy != nullptr &&
                        json_object_is_type(object->jobj, json_type_object) != 0;
      return fits && merge(object->jobj, copy.get()) ? Outcome::kDone : Outcome::kWrongType;
    }
    case Action::kRemove:
      if (!isThere) {
        return target.kind == Target::Kind::kRoot ? Outcome::kWrongType : Outcome::kNotFound;
      }
      database.del(target.path.c_str());
      return Outcome::kDone;
  }
  return Outcome::kWrongType;
}

std::string problemOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::kNotFound:
      return "nothing is at this path";
    case Outcome::kWrongType:
      return "this cannot be done to the value at this path";
    default:
      return "";
  }
}

}  // namespace

Answer Areas::read(API_TYPE_T area, const std::vector<std::string>& segments,
                   Databases& databases) {
  if (namesSecret(segments)) {
    return {Outcome::kForbidden, "", "secrets can be set but not read"};
  }
  const Databases::Use use = databases.use(area);
  const Database database(area, databases.key());
  if (!database) {
    return noDatabase(area, databases);
  }
  const Target target = findTarget(*database, segments);
  if (target.kind == Target::Kind::kNothing || target.kind == Target::Kind::kFree) {
    return {Outcome::kNotFound, "", problemOf(Outcome::kNotFound)};
  }
  return {Outcome::kDone, show(*database, target.path), ""};
}

Answer Areas::change(API_TYPE_T area, const Change& change, Databases& databases) {
  const std::lock_guard<std::mutex> turn(turns_[area]);
  const Databases::Use use = databases.use(area);
  Database database(area, databases.key());
  if (!database) {
    return noDatabase(area, databases);
  }
  const Handle attempt(database->clone(nullptr));
  const Outcome outcome = attempt != nullptr ? apply(*attempt, change) : Outcome::kBroken;
  if (outcome != Outcome::kDone && outcome != Outcome::kMade) {
    return {outcome, "", problemOf(outcome)};
  }
  // What the parser would not read back is not saved: the same limit shows in a copy.
  if (Handle(attempt->clone(nullptr)) == nullptr) {
    return {Outcome::kRefused, "", "the database would be nested too deep"};
  }
  const std::string refusal = findRefusal(area, change, *attempt, databases.key());
  if (!refusal.empty()) {
    return {Outcome::kRefused, "", refusal};
  }
  apply(*database, change);
  const std::string value = change.action == Action::kRemove
                                ? ""
                                : show(*database, findTarget(*database, change.segments).path);
  if (!database.save()) {
    return {Outcome::kBroken, "", "the change could not be saved; the file is as it was"};
  }
  databases.noteSaved(area);
  return {outcome, namesSecret(change.segments) ? "" : value, ""};
}
