// Whether a password is right, asked as often as the limit lets somebody ask. Logging in asks here,
// and so does changing a password, so that neither is a way around the other.
#ifndef HEARTH_EXAMPLES_GATEWAYD_PASSWORD_CHECK_H
#define HEARTH_EXAMPLES_GATEWAYD_PASSWORD_CHECK_H

#include <chrono>
#include <string>

#include "login_limit.h"
#include "users.h"

struct Verdict {
  enum class Kind { kRight, kWrong, kWait, kNoUsers };
  Kind kind;
  std::chrono::seconds wait{0};  // before the next attempt
  User user{};                   // of kRight
  std::string mark;              // of kRight: what the browser brings from now on
};

class PasswordCheck {
 public:
  explicit PasswordCheck(Users& users) : users_(users) {}

  // Threads: any. Cost: that of a hash, unless the answer is kWait or kNoUsers.
  Verdict check(const LoginLimit::Attempt& attempt, const std::string& password);

 private:
  Users& users_;
  LoginLimit limit_;
};

#endif
