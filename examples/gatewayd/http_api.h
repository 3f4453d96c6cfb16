// The HTTP face: which request goes where, who may make it, and which status answers it.
//
//   POST   /api/v1/login          {"user", "password"}; sets the session cookie
//   POST   /api/v1/logout
//   GET    /api/v1/areas          the names of the areas
//   GET    /api/v1/AREA[/PATH]    the value
//   PUT    /api/v1/AREA/PATH      puts the JSON value of the body there, and makes the last member
//   PATCH  /api/v1/AREA[/PATH]    merges the JSON object of the body into the object there
//   DELETE /api/v1/AREA/PATH      removes the value
//
// 200, 201 and 204 are successes; 400 a request that makes no sense, 401 no session, 403 a secret
// or a foreign page, 404 nothing there, 409 a change that does not fit, 422 a value that a schema
// refuses, 423 an area that another request holds, 429 too many logins, 503 too many sessions.
#ifndef HEARTH_EXAMPLES_GATEWAYD_HTTP_API_H
#define HEARTH_EXAMPLES_GATEWAYD_HTTP_API_H

#include <httplib.h>

#include <string>

#include "areas.h"
#include "login.h"
#include "sessions.h"

class HttpApi {
 public:
  HttpApi(SessionStore& sessions, Login& login) : sessions_(sessions), login_(login) {}

  // Registers everything on the server, with the pages below `pages` for the rest. False when there
  // are no pages. The server must not outlive this object.
  [[nodiscard]] bool serve(httplib::Server& server, const std::string& pages);

 private:
  // One request on a value: what the URL names, and for whom.
  struct Work {
    API_TYPE_T area;
    std::vector<std::string> segments;
    std::shared_ptr<Session> session;
  };

  bool mayProceed(const httplib::Request& request, httplib::Response& response);
  bool find(const httplib::Request& request, httplib::Response& response, Work& work);
  void read(const httplib::Request& request, httplib::Response& response);
  void change(Action action, const httplib::Request& request, httplib::Response& response);
  void logIn(const httplib::Request& request, httplib::Response& response);
  void logOut(const httplib::Request& request, httplib::Response& response);

  SessionStore& sessions_;
  Login& login_;
};

#endif
