#include "http_api.h"

#include "messages.h"
#include "url_path.h"

namespace {

using httplib::Request;
using httplib::Response;

constexpr char kApi[] = "/api/v1/";
constexpr char kCookie[] = "gatewayd=";
constexpr char kJson[] = "application/json";
constexpr std::size_t kLongestPath = 512;

void fail(Response& response, int status, const std::string& problem) {
  const hearth::Value message = hearth::newObject();
  static_cast<void>(hearth::set(message, "error", problem));
  response.status = status;
  response.set_content(hearth::toText(message), kJson);
}

void answer(Response& response, const Answer& result) {
  if (result.status >= 400) {
    fail(response, result.status, result.problem);
    return;
  }
  response.status = result.value.empty() ? 204 : result.status;
  if (!result.value.empty()) {
    response.set_content(result.value, kJson);
  }
}

std::string tokenOf(const Request& request) {
  const std::string cookies = request.get_header_value("Cookie");
  const std::size_t start = cookies.find(kCookie);
  if (start == std::string::npos) {
    return "";
  }
  const std::size_t from = start + sizeof(kCookie) - 1;
  return cookies.substr(from, cookies.find(';', from) - from);
}

void setCookie(Response& response, const std::string& token, const char* more) {
  response.set_header("Set-Cookie",
                      kCookie + token + "; HttpOnly; SameSite=Strict; Path=/api/v1" + more);
}

// A page of another site may send requests here too, by a name of its own that leads to this
// machine. Only our own names are answered.
bool isOurName(const Request& request) {
  const std::string host = request.get_header_value("Host");
  const std::string name = host.substr(0, host.rfind(':'));
  return name == "127.0.0.1" || name == "localhost";
}

// A form of another site cannot send this type.
bool isJson(const Request& request) {
  return request.get_header_value("Content-Type").rfind(kJson, 0) == 0;
}

void setCommonHeaders(const Request& request, Response& response) {
  response.set_header("X-Content-Type-Options", "nosniff");
  response.set_header("Referrer-Policy", "no-referrer");
  response.set_header("X-Frame-Options", "DENY");
  response.set_header("Content-Security-Policy", "default-src 'self'");
  if (request.path.rfind(kApi, 0) == 0) {
    response.set_header("Cache-Control", "no-store");
  }
}

void logRequest(API_TYPE_T area, const std::string& stem, const Request& request,
                const Session& session, const Response& response) {
  const auto group = static_cast<LOG_GROUP_T>(LOG_GROUP_APIV1_GATEWAY + static_cast<int>(area));
  Logger::print(LOG_INFO, area == API_MISC ? LOG_GROUP_API_AL : group, "%s %s by %s: %d\n",
                request.method.c_str(), stem.empty() ? "(unnamed)" : stem.c_str(),
                session.databases.key().c_str(), response.status);
}

}  // namespace

bool HttpApi::serve(httplib::Server& server, const std::string& pages) {
  server.set_payload_max_length(std::size_t{64} * 1024);
  server.new_task_queue = [] { return new httplib::ThreadPool(16); };
  server.set_pre_routing_handler([this](const Request& request, Response& response) {
    setCommonHeaders(request, response);
    return mayProceed(request, response) ? httplib::Server::HandlerResponse::Unhandled
                                         : httplib::Server::HandlerResponse::Handled;
  });
  server.Post("/api/v1/login", [this](const Request& in, Response& out) { logIn(in, out); });
  server.Post("/api/v1/logout", [this](const Request& in, Response& out) { logOut(in, out); });
  const char* const values = "/api/v1/.+";
  server.Get(values, [this](const Request& in, Response& out) { read(in, out); });
  server.Put(values,
             [this](const Request& in, Response& out) { change(Action::kReplace, in, out); });
  server.Patch(values,
               [this](const Request& in, Response& out) { change(Action::kMerge, in, out); });
  server.Delete(values,
                [this](const Request& in, Response& out) { change(Action::kRemove, in, out); });
  return server.set_mount_point("/", pages);
}

// Decided before the body of a request is read.
bool HttpApi::mayProceed(const Request& request, Response& response) {
  if (request.path.size() > kLongestPath) {
    fail(response, 414, "the path is too long");
  } else if (!isOurName(request)) {
    fail(response, 403, "this server answers as 127.0.0.1 and localhost only");
  } else if (request.path.rfind(kApi, 0) != 0) {
    return true;
  } else if ((request.method == "POST" || request.method == "PUT" || request.method == "PATCH") &&
             !isJson(request)) {
    fail(response, 415, "the body must be application/json");
  } else if (request.path != "/api/v1/login" && sessions_.find(tokenOf(request)) == nullptr) {
    fail(response, 401, "log in first");
  } else {
    return true;
  }
  return false;
}

bool HttpApi::find(const Request& request, Response& response, Work& work) {
  const std::string rest = request.path.substr(sizeof(kApi) - 1);
  const std::size_t slash = std::min(rest.find('/'), rest.size());
  const auto area = hearth::areaNamed(rest.substr(0, slash));
  if (!area) {
    fail(response, 404, "there is no such area");
    return false;
  }
  const auto segments = splitSegments(slash < rest.size() ? rest.substr(slash + 1) : "");
  if (!segments) {
    fail(response, 400, "this is no path: a part is empty, or has a dot or a bracket");
    return false;
  }
  work = {*area, *segments, sessions_.find(tokenOf(request))};
  if (work.session == nullptr) {
    fail(response, 401, "log in first");
    return false;
  }
  return true;
}

void HttpApi::read(const Request& request, Response& response) {
  if (request.path == "/api/v1/areas") {
    const hearth::Value names = hearth::newArray();
    for (const char* const name : API_DATA_DIR) {
      static_cast<void>(hearth::append(names, name));
    }
    response.set_content(hearth::toText(names), kJson);
    return;
  }
  Work work;
  if (!find(request, response, work)) {
    return;
  }
  const std::string stem = stemOfRead(work.area, work.segments);
  answer(response, readValue(work.area, work.segments, work.session->databases));
  logRequest(work.area, stem, request, *work.session, response);
}

void HttpApi::change(Action action, const Request& request, Response& response) {
  Work work;
  if (!find(request, response, work)) {
    return;
  }
  const hearth::Result<hearth::Value> body =
      action != Action::kRemove ? hearth::parse(request.body) : hearth::Value();
  if (!body) {
    fail(response, 400, "the body is no JSON: " + body.failure().sentence);
    return;
  }
  const Wanted wanted = {action, work.segments, *body};
  answer(response, changeValue(work.area, wanted, work.session->databases));
  logRequest(work.area, stemOfChange(work.area, wanted), request, *work.session, response);
}

void HttpApi::logIn(const Request& request, Response& response) {
  const LoginResult result = login_.attempt(request.body, request.remote_addr);
  response.status = result.status;
  response.set_content(result.body, kJson);
  if (!result.token.empty()) {
    setCookie(response, result.token, "");
  }
  if (result.waitMinutes > 0) {
    response.set_header("Retry-After", std::to_string(result.waitMinutes * 60));
  }
}

void HttpApi::logOut(const Request& request, Response& response) {
  sessions_.close(tokenOf(request));
  setCookie(response, "", "; Max-Age=0");
  response.status = 204;
}
