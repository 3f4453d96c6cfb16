#include "users.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "secrets.h"
#include "server_limits.h"

namespace {

using hearth::Fault;
using hearth::View;

constexpr std::array<const char*, 3> kRoles = {"view", "change", "administer"};
constexpr char kHash[] = "passwordHash";

User userFrom(View entry) {
  return {hearth::getOr(entry, "name", std::string()),
          roleNamed(hearth::getOr(entry, "role", "")).value_or(Role::kView),
          hearth::getOr(entry, kHash, std::string())};
}

hearth::Result<void> refused(const char* why) {
  hearth::Failure failure;
  failure.fault = Fault::kRefused;
  failure.sentence = why;
  return failure;
}

// The hashes that there are before a change, by name.
class Hashes {
 public:
  explicit Hashes(View users) {
    for (const View entry : hearth::elements(users)) {
      const User user = userFrom(entry);
      hashes_[user.name] = user.hash;
    }
  }

  bool has(const std::string& hash) const {
    return hash.empty() || std::any_of(hashes_.begin(), hashes_.end(),
                                       [&hash](const auto& known) { return known.second == hash; });
  }

  // Puts the hash of a user back whom the client sent without it.
  void complete(View entry, const std::string& name) const {
    const auto known = hashes_.find(name);
    if (!hearth::find(entry, kHash) && known != hashes_.end()) {
      json_object_object_add(entry.raw(), kHash, json_object_new_string(known->second.c_str()));
    }
  }

 private:
  std::map<std::string, std::string> hashes_;
};

// What is secret in a user is the hash alone; whatever else is called a secret was not set here.
bool holdsOtherSecret(View entry) {
  for (const hearth::Member& member : hearth::members(entry)) {
    if (member.name != kHash && hearth::isSecretName(member.name)) {
      return true;
    }
  }
  return false;
}

}  // namespace

const char* roleName(Role role) {
  return kRoles.at(static_cast<std::size_t>(role));
}

std::optional<Role> roleNamed(std::string_view name) {
  for (std::size_t i = 0; i < kRoles.size(); ++i) {
    if (name == kRoles.at(i)) {
      return static_cast<Role>(i);
    }
  }
  return std::nullopt;
}

void Users::setFirstPassword(const std::string& password) {
  firstHash_ = hashOf(password);
}

bool Users::needsFirstPassword() {
  const auto first = find(kFirstUser);
  return first && *first && (*first)->hash == firstHash_;
}

hearth::Result<std::optional<User>> Users::find(const std::string& name) {
  const std::lock_guard<std::mutex> queue(mutex_);
  const auto area = hearth::AreaLock::take(API_GATEWAY, "", session_, limits::kPatience);
  if (!area) {
    return area.failure();
  }
  bool hasAdministrator = false;
  std::optional<User> found;
  for (const View entry : hearth::elements(*area, "users")) {
    User user = userFrom(entry);
    hasAdministrator = hasAdministrator || user.role == Role::kAdminister;
    if (user.name == name) {
      found = std::move(user);
    }
  }
  if (name == kFirstUser && !found && !hasAdministrator) {
    found = User{name, Role::kAdminister, ""};
  }
  if (name == kFirstUser && found && found->hash.empty()) {
    found->hash = firstHash_;
  }
  return found;
}

hearth::Result<void> settleUsers(View before, View after, Role role) {
  if (json_object_equal(before.raw(), after.raw()) != 0) {
    return {};
  }
  if (role != Role::kAdminister) {
    return refused("only an administrator may change users");
  }
  const Hashes hashes(before);
  std::set<std::string> names;
  bool hasAdministrator = false;
  for (const View entry : hearth::elements(after)) {
    const User user = userFrom(entry);
    if (!hashes.has(user.hash) || holdsOtherSecret(entry)) {
      return refused("passwords are set by POST /api/v1/password only");
    }
    if (!names.insert(user.name).second) {
      return refused("there are two users of one name");
    }
    hasAdministrator = hasAdministrator || user.role == Role::kAdminister;
    hashes.complete(entry, user.name);
  }
  return hasAdministrator ? hearth::Result<void>() : refused("one administrator must remain");
}
