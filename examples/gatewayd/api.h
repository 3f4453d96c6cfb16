// The API: which request goes where, who may make it, and which status answers it.
//
//   POST   /api/v1/login          {"user", "password"}; sets the session cookie
//   POST   /api/v1/logout
//   POST   /api/v1/password       {"user", "password", "current"}
//   GET    /api/v1/session        {"user", "role", "idleSeconds"}
//   GET    /api/v1/areas          the names of the areas
//   GET    /api/v1/schemas/AREA   the schema of an area's document
//   GET    /api/v1/AREA[/PATH]    the value, without secrets
//   PUT    /api/v1/AREA/PATH      puts the JSON value of the body there, and makes the last member
//   PATCH  /api/v1/AREA[/PATH]    merges the JSON object of the body into the object there
//   PATCH  /api/v1/AREA           with application/json-patch+json: the body's operations, all or
//   none DELETE /api/v1/AREA/PATH      removes the value
//
// 200, 201 and 204 are successes; 400 a request that makes no sense, 401 no session, 403 a role
// that does not allow it, a secret, or a foreign page, 404 nothing there, 405 another method, 409 a
// change that does not fit or a test that fails, 411, 413 and 414 a length that is not said or too
// large, 415 another type, 422 a value that a schema refuses, 423 an area that another request
// holds, 429 too many log-ins, 431 too large a head, 503 a store that cannot be read or written, or
// too many sessions. A refusal's body is {"error"}, that of 422 {"error", "violations"}.
#ifndef HEARTH_EXAMPLES_GATEWAYD_API_H
#define HEARTH_EXAMPLES_GATEWAYD_API_H

#include <optional>
#include <string>
#include <vector>

#include "areas.h"
#include "exchange.h"
#include "login.h"
#include "pages.h"
#include "sessions.h"
#include "users.h"

// Threads: any; what it refers to must outlive it.
class Api {
 public:
  Api(SessionStore& sessions, Users& users, Login& login, const Pages& pages, std::string ownOrigin)
      : sessions_(sessions),
        users_(users),
        login_(login),
        pages_(pages),
        ownOrigin_(std::move(ownOrigin)) {}

  // Why a request is refused that has shown its head only: it is malformed, or of nobody.
  std::optional<Reply> refuse(const Request& request);

  // What a request is answered whose body is there. Takes as long as the store takes.
  Reply answer(const Request& request);

  // True when the answer takes a hash of a password.
  static bool asksPassword(const Request& request);

  bool hasSession(const Request& request);

 private:
  // One request on a value: what the URL names, and for whom.
  struct Work {
    API_TYPE_T area;
    std::vector<std::string> segments;
    SessionPointer session;
    User user;
  };

  Reply answerApi(const Request& request, Work work);
  Reply answerValue(const Request& request, Work& work, const std::string& rest);
  Reply read(const Request& request, const Work& work);
  Reply change(const Request& request, const Work& work);
  Reply sessionOf(const User& user) const;

  SessionStore& sessions_;
  Users& users_;
  Login& login_;
  const Pages& pages_;
  const std::string ownOrigin_;
};

#endif
