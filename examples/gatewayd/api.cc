#include "api.h"

#include <algorithm>

#include "bodies.h"
#include "messages.h"
#include "request_head.h"
#include "url_path.h"

namespace {

constexpr char kSchemas[] = "schemas/";

// What is behind "/api/v1/".
std::string restOf(const Request& request) {
  return request.path.substr(sizeof(kApi) - 1);
}

bool isLogin(const Request& request) {
  return request.method == "POST" && request.path == "/api/v1/login";
}

Reply namesOfAreas() {
  const hearth::Value names = hearth::newArray();
  for (const char* const name : API_DATA_DIR) {
    static_cast<void>(hearth::append(names, name));
  }
  return jsonReply(200, names);
}

// Of a client's words only those that are ours reach the log.
void logRequest(API_TYPE_T area, const std::string& stem, const Request& request,
                const hearth::Session& session, int status) {
  const auto group = static_cast<LOG_GROUP_T>(LOG_GROUP_APIV1_GATEWAY + static_cast<int>(area));
  Logger::print(LOG_INFO, area == API_MISC ? LOG_GROUP_API_AL : group, "%s %s by %s: %d\n",
                request.method.c_str(), stem.empty() ? "(unnamed)" : stem.c_str(),
                session.key().c_str(), status);
}

Action actionOf(const Request& request) {
  if (request.method == "PATCH") {
    return mediaType(request) == kJsonPatch ? Action::kPatch : Action::kMerge;
  }
  return request.method == "PUT" ? Action::kReplace : Action::kRemove;
}

}  // namespace

std::optional<Reply> Api::refuse(const Request& request) {
  std::optional<Reply> refused = refuseHead(request, ownOrigin_);
  if (!refused && isForApi(request) && !isLogin(request) && !hasSession(request)) {
    refused = refusal(401, "log in first");
  }
  return refused;
}

bool Api::asksPassword(const Request& request) {
  return isLogin(request) || (request.method == "POST" && request.path == "/api/v1/password");
}

bool Api::hasSession(const Request& request) {
  return sessions_.find(Login::tokenOf(request)) != nullptr;
}

Reply Api::answer(const Request& request) {
  if (!isForApi(request)) {
    return pages_.answer(request);
  }
  if (isLogin(request)) {
    return login_.logIn(request);
  }
  // The pointer keeps the session's databases until the request is done. Role and name are asked
  // anew each time: who was taken out of the users is out.
  const SessionPointer session = sessions_.find(Login::tokenOf(request));
  if (session == nullptr) {
    return refusal(401, "log in first");
  }
  const auto user = users_.find(session->user());
  if (!user) {
    return refusal(503, "the users cannot be read");
  }
  if (!*user) {
    sessions_.close(Login::tokenOf(request));
    return refusal(401, "log in first");
  }
  return answerApi(request, {API_GATEWAY, {}, session, **user});
}

Reply Api::answerApi(const Request& request, Work work) {
  const std::string rest = restOf(request);
  if (request.method == "POST") {
    if (rest == "logout") {
      return login_.logOut(request);
    }
    return rest == "password" ? login_.setPassword(request, *work.session, work.user.role)
                              : refusal(404, "there is nothing to post to");
  }
  if (request.method == "GET" && rest == "areas") {
    return namesOfAreas();
  }
  if (request.method == "GET" && rest == "session") {
    return sessionOf(work.user);
  }
  const bool isSchema = request.method == "GET" && rest.rfind(kSchemas, 0) == 0;
  return answerValue(request, work, isSchema ? rest.substr(sizeof(kSchemas) - 1) : rest);
}

Reply Api::answerValue(const Request& request, Work& work, const std::string& rest) {
  const std::size_t slash = std::min(rest.find('/'), rest.size());
  const auto area = hearth::areaNamed(rest.substr(0, slash));
  if (!area) {
    return refusal(404, "there is no such area");
  }
  const auto segments = splitSegments(slash < rest.size() ? rest.substr(slash + 1) : "");
  if (!segments) {
    return refusal(400, "this is no path: a part is empty, is no text, or has a dot or a bracket");
  }
  work.area = *area;
  work.segments = *segments;
  if (rest != restOf(request)) {
    return segments->empty() ? readSchema(*area) : refusal(404, "schemas are of whole areas");
  }
  return request.method == "GET" ? read(request, work) : change(request, work);
}

Reply Api::read(const Request& request, const Work& work) {
  Reply reply = readValue(work.area, work.segments, work.session->databases());
  logRequest(work.area, stemOfRead(work.area, work.segments), request, work.session->databases(),
             reply.status);
  return reply;
}

Reply Api::change(const Request& request, const Work& work) {
  if (work.user.role == Role::kView) {
    return refusal(403, "your role may view but not change");
  }
  const Action action = actionOf(request);
  const hearth::Result<hearth::Value> body =
      action != Action::kRemove ? parseBody(request.body) : hearth::Value();
  if (!body) {
    return refusal(400, "the body is no JSON: " + body.failure().sentence);
  }
  const Wanted wanted = {action, work.segments, *body};
  Reply reply = changeValue(work.area, wanted, {work.session->databases(), work.user.role});
  logRequest(work.area, stemOfChange(work.area, wanted), request, work.session->databases(),
             reply.status);
  return reply;
}

Reply Api::sessionOf(const User& user) const {
  const hearth::Value value = hearth::newObject();
  static_cast<void>(hearth::set(value, "user", user.name));
  static_cast<void>(hearth::set(value, "role", roleName(user.role)));
  static_cast<void>(hearth::set(value, "idleSeconds", sessions_.idleLimit().count()));
  return jsonReply(200, value);
}
