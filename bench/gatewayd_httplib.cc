// The handlers of examples/gatewayd on another server library, cpp-httplib, to measure the two
// beside each other. It has none of gatewayd's limits: it is here for figures alone.
#include <httplib.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>

#include "api.h"
#include "request_head.h"

namespace {

Request requestFrom(const httplib::Request& from) {
  Request request;
  request.method = from.method;
  request.path = from.target.substr(0, from.target.find('?'));
  request.address = from.remote_addr;
  for (const auto& [name, value] : from.headers) {
    std::string small = name;
    for (char& c : small) {
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    request.headers.emplace_back(small, value);
  }
  request.body = from.body;
  return request;
}

void answer(Api& api, const httplib::Request& from, httplib::Response& to) {
  const Request request = requestFrom(from);
  std::optional<Reply> refused = api.refuse(request);
  Reply reply = refused ? *refused : api.answer(request);
  addCommonHeaders(request, reply);
  to.status = reply.status;
  for (const auto& [name, value] : reply.headers) {
    to.set_header(name, value);
  }
  if (!reply.body.empty()) {
    to.set_content(reply.body, reply.type);
  }
}

}  // namespace

// gatewayd_httplib --data FOLDER ...: as gatewayd, at any free port.
int main(int count, char** arguments) {
  Pages pages;
  const char* const password = std::getenv("GATEWAYD_PASSWORD");
  if (count < 3 || password == nullptr || !pages.read(GATEWAYD_PAGES) || chdir(arguments[2]) != 0) {
    return EXIT_FAILURE;
  }
  BEConfig::init("data/gateway.conf");
  Logger::init();
  LocalDbCtrl::init();
  SessionStore sessions(true, std::chrono::seconds(BEConfig::AUTH_EXPIRATION));
  Users users(hearth::Session::shared());
  users.setFirstPassword(password);
  Login login(sessions, users, false);
  Api api(sessions, users, login, pages, "");

  httplib::Server server;
  server.new_task_queue = [] { return new httplib::ThreadPool(16); };
  const auto handler = [&api](const httplib::Request& from, httplib::Response& to) {
    answer(api, from, to);
  };
  server.Get(".*", handler).Put(".*", handler).Post(".*", handler);
  const int port = server.bind_to_any_port("127.0.0.1");
  std::fprintf(stderr, "gatewayd_httplib: http://127.0.0.1:%d/\n", port);
  return server.listen_after_bind() ? EXIT_SUCCESS : EXIT_FAILURE;
}
