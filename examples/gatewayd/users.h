// Who may log in, and what each may do: the gateway area's "users", [{name, role, passwordHash}].
//
//   view        read everything but secrets, change the own password
//   change      and change everything but users
//   administer  and change users and their passwords
//
// A gateway that is new has no password. For the time until its first administrator has set one, a
// password of this run holds (setFirstPassword); it is kept as a hash, in memory only.
#ifndef HEARTH_EXAMPLES_GATEWAYD_USERS_H
#define HEARTH_EXAMPLES_GATEWAYD_USERS_H

#include <hearth/kit.h>

#include <mutex>
#include <optional>
#include <string>

enum class Role { kView, kChange, kAdminister };

// "view", "change", "administer"; nothing for another text.
const char* roleName(Role role);
std::optional<Role> roleNamed(std::string_view name);

struct User {
  std::string name;
  Role role;
  std::string hash;  // of the password; empty: nobody logs in
};

constexpr char kFirstUser[] = "admin";

class Users {
 public:
  // The session is one of the backend's own, for reading before anybody is logged in.
  explicit Users(hearth::Session session) : session_(std::move(session)) {}

  // Before other threads exist.
  void setFirstPassword(const std::string& password);

  // True when the first user logs in with the password of this run.
  bool needsFirstPassword();

  // The user as the database has it now; nothing when there is none of this name.
  // Failure: as of AreaLock::take; then nobody is a user.
  hearth::Result<std::optional<User>> find(const std::string& name);

 private:
  const hearth::Session session_;
  std::string firstHash_;
  std::mutex mutex_;  // readers queue here, not at the area
};

// Judges a change of the gateway area's users, and completes it: a hash that the client did not
// send back, because it never sees one, stays. Failure: kRefused for one who may not change users;
// for a password that was not set as passwords are; for two users of one name; for a change that
// leaves no administrator.
hearth::Result<void> settleUsers(hearth::View before, hearth::View after, Role role);

#endif
