#include "password_check.h"

#include "secrets.h"

// Counted before the password is looked at: whatever happens next, the attempt was made.
Verdict PasswordCheck::check(const LoginLimit::Attempt& attempt, const std::string& password) {
  const std::chrono::seconds wait = limit_.admit(attempt);
  if (wait > std::chrono::seconds::zero()) {
    return {Verdict::Kind::kWait, wait, {}, ""};
  }
  const auto found = users_.find(attempt.user);
  if (!found) {
    limit_.takeBack(attempt);
    return {Verdict::Kind::kNoUsers, {}, {}, ""};
  }
  const User user = found->value_or(User{attempt.user, Role::kView, ""});
  if (!isPassword(password, user.hash)) {
    return {Verdict::Kind::kWrong, limit_.wait(attempt), {}, ""};
  }
  return {Verdict::Kind::kRight, {}, user, limit_.succeeded(attempt)};
}
