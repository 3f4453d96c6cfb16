// Logging in, and setting passwords.
//
//   POST /api/v1/login     {"user", "password"}
//   POST /api/v1/password  {"user", "password", "current"}: one's own with the current one; that of
//                          others without, for administrators
#ifndef HEARTH_EXAMPLES_GATEWAYD_LOGIN_H
#define HEARTH_EXAMPLES_GATEWAYD_LOGIN_H

#include <optional>
#include <string>

#include "exchange.h"
#include "password_check.h"
#include "sessions.h"
#include "users.h"

class Login {
 public:
  // With `isSecure` browsers send the cookies back over TLS only.
  Login(SessionStore& sessions, Users& users, bool isSecure)
      : sessions_(sessions), check_(users), isSecure_(isSecure) {}

  Reply logIn(const Request& request);
  Reply logOut(const Request& request);
  Reply setPassword(const Request& request, const Session& session, Role role);

  static std::string tokenOf(const Request& request);

 private:
  Reply answer(int status, const char* text, std::chrono::seconds wait) const;
  Reply welcome(const Verdict& verdict);
  std::optional<Reply> refuseCurrent(const Request& request, const std::string& user,
                                     const std::string& current);
  void setCookie(Reply& reply, const char* name, const std::string& value, const char* more) const;

  SessionStore& sessions_;
  PasswordCheck check_;
  const bool isSecure_;
};

#endif
