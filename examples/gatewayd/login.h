// Logging in, with the wait that hearth's login records impose on an address that keeps trying.
#ifndef HEARTH_EXAMPLES_GATEWAYD_LOGIN_H
#define HEARTH_EXAMPLES_GATEWAYD_LOGIN_H

#include <mutex>
#include <string>

#include "sessions.h"

struct LoginResult {
  int status;         // of the HTTP answer
  std::string token;  // where the login succeeded
  std::string body;   // the response message, as JSON text
  unsigned int waitMinutes;
};

class Login {
 public:
  Login(SessionStore& sessions, std::string user, std::string password)
      : sessions_(sessions), user_(std::move(user)), password_(std::move(password)) {}

  // Judges a login request (its JSON text) from a client address.
  LoginResult attempt(const std::string& request, const std::string& address);

 private:
  bool isRight(hearth::View message) const;
  LoginResult answer(int status, const std::string& token, const char* text,
                     unsigned int waitMinutes) const;

  SessionStore& sessions_;
  const std::string user_;
  const std::string password_;
  std::mutex oneAtATime_;  // a burst of parallel guesses counts as one guess after the other
};

#endif
