#include "login.h"

#include "area_turn.h"
#include "bodies.h"
#include "request_head.h"
#include "secrets.h"

namespace {

constexpr char kToken[] = "gatewayd";
constexpr char kMark[] = "gatewayd-browser";  // of a browser that has logged in before
constexpr char kYear[] = "; Path=/api/v1; Max-Age=31536000";

bool conforms(int32_t setting, hearth::View message, const char* label) {
  return setting == 0 || hearth::validateMessage(message, API_GATEWAY, label);
}

void put(hearth::Edit message, const char* path, const std::string& value) {
  static_cast<void>(hearth::set(message, path, value));
}

// Letters of any script count as their bytes; the limit keeps hashing from being given megabytes.
bool isPossiblePassword(const std::string& password) {
  return password.size() >= 8 && password.size() <= 64;
}

// Attempts that were not let through say nothing: whoever floods us fills no log.
void logVerdict(const Request& request, const Verdict& verdict) {
  if (verdict.kind == Verdict::Kind::kRight || verdict.kind == Verdict::Kind::kWrong) {
    const bool isRight = verdict.kind == Verdict::Kind::kRight;
    Logger::print(isRight ? LOG_INFO : LOG_WARNING, LOG_GROUP_APIV1_GATEWAY,
                  "GATEWAY_LOGIN_REQ from %s %s\n", request.address.c_str(),
                  isRight ? "accepted" : "refused");
  }
}

hearth::Result<void> storeHash(const std::string& user, const std::string& hash,
                               const hearth::Session& session) {
  const AreaTurn turn(API_GATEWAY);
  auto change = hearth::Change::begin(API_GATEWAY, "", session, turn.patience());
  if (!change) {
    return change.failure();
  }
  for (const hearth::View entry : hearth::elements(*change, "users")) {
    if (hearth::getOr(entry, "name", "") == user) {
      static_cast<void>(hearth::set(hearth::Edit(entry.raw()), "passwordHash", hash));
      hearth::ChangeOptions options;
      options.isStrict = true;
      return change->commit(options);
    }
  }
  hearth::Failure failure;
  failure.fault = hearth::Fault::kNoValue;
  failure.sentence = "there is no such user";
  return failure;
}

}  // namespace

std::string Login::tokenOf(const Request& request) {
  return cookie(request, kToken);
}

Reply Login::logIn(const Request& request) {
  hearth::Result<hearth::Value> data = parseBody(request.body);
  if (!data || !hearth::View(*data).isObject()) {
    return answer(400, "the request is no JSON object", {});
  }
  const hearth::Value message = hearth::newObject();
  const bool isMade = hearth::set(message, "messageId", 1) &&
                      hearth::set(message, "data", std::move(*data)) &&
                      hearth::set(message, "data.address", request.address);
  if (!isMade || !conforms(1, message, "GATEWAY_LOGIN_REQ")) {
    return answer(422, "the login request does not conform to its schema", {});
  }
  const LoginLimit::Attempt attempt = {
      request.address, hearth::getOr(message, "data.user", std::string()), cookie(request, kMark)};
  const Verdict verdict =
      check_.check(attempt, hearth::getOr(message, "data.password", std::string()));
  logVerdict(request, verdict);
  switch (verdict.kind) {
    case Verdict::Kind::kRight:
      return welcome(verdict);
    case Verdict::Kind::kWrong:
      return answer(verdict.wait.count() > 0 ? 429 : 401, "wrong user or password", verdict.wait);
    case Verdict::Kind::kWait:
      return answer(429, "too many attempts", verdict.wait);
    case Verdict::Kind::kNoUsers:
      break;
  }
  return answer(503, "the users cannot be read", {});
}

Reply Login::logOut(const Request& request) {
  sessions_.close(tokenOf(request));
  Reply reply;
  setCookie(reply, kToken, "", "; Path=/api/v1; Max-Age=0");
  return reply;
}

Reply Login::setPassword(const Request& request, const Session& session, Role role) {
  const hearth::Result<hearth::Value> body = parseBody(request.body);
  const auto user = body ? hearth::get<std::string>(*body, "user") : std::nullopt;
  const auto password = body ? hearth::get<std::string>(*body, "password") : std::nullopt;
  if (!user || !password) {
    return refusal(400, "the body is no JSON object with a user and a password");
  }
  if (!isPossiblePassword(*password)) {
    return refusal(422, "a password has 8 to 64 characters");
  }
  if (*user != session.user() && role != Role::kAdminister) {
    return refusal(403, "only an administrator may set the passwords of others");
  }
  if (*user == session.user()) {
    std::optional<Reply> refused =
        refuseCurrent(request, *user, hearth::getOr(*body, "current", std::string()));
    if (refused) {
      return *refused;
    }
  }
  const hearth::Result<void> stored = storeHash(*user, hashOf(*password), session.databases());
  if (!stored) {
    return refusal(statusOf(stored.failure().fault), stored.failure().sentence);
  }
  sessions_.closeOthers(*user, *user == session.user() ? tokenOf(request) : "");
  return {};
}

// Whoever finds a browser that is logged in must not take the account over, nor guess its password
// here instead of at the door.
std::optional<Reply> Login::refuseCurrent(const Request& request, const std::string& user,
                                          const std::string& current) {
  const Verdict verdict = check_.check({request.address, user, cookie(request, kMark)}, current);
  if (verdict.kind == Verdict::Kind::kRight) {
    return std::nullopt;
  }
  if (verdict.kind == Verdict::Kind::kNoUsers) {
    return refusal(503, "the users cannot be read");
  }
  const bool waits = verdict.wait.count() > 0;
  Reply reply = refusal(waits ? 429 : 403, "the current password is wrong");
  if (waits) {
    reply.headers.emplace_back("Retry-After", std::to_string(verdict.wait.count()));
  }
  return reply;
}

// The response message; `wait` is told in whole minutes there, in seconds in the header.
Reply Login::answer(int status, const char* text, std::chrono::seconds wait) const {
  const hearth::Value message = hearth::newObject();
  static_cast<void>(hearth::set(message, "messageId", 2));
  static_cast<void>(hearth::set(message, "status.code", 1));
  put(message, "status.text", text);
  static_cast<void>(hearth::set(message, "data.waitMinutes", (wait.count() + 59) / 60));
  Reply reply = jsonReply(status, message);
  if (wait.count() > 0) {
    reply.headers.emplace_back("Retry-After", std::to_string(wait.count()));
  }
  return reply;
}

Reply Login::welcome(const Verdict& verdict) {
  const std::string token = sessions_.open(verdict.user.name);
  const SessionPointer session = sessions_.find(token);
  if (session == nullptr) {
    return answer(503, "too many sessions", {});
  }
  const hearth::Value message = hearth::newObject();
  static_cast<void>(hearth::set(message, "messageId", 2));
  static_cast<void>(hearth::set(message, "status.code", 0));
  put(message, "status.text", "ok");
  put(message, "data.session", session->databases().key());
  put(message, "data.role", roleName(verdict.user.role));
  static_cast<void>(hearth::set(message, "data.expiresInSeconds", sessions_.idleLimit().count()));
  static_cast<void>(hearth::set(message, "data.waitMinutes", 0));
  static_cast<void>(hearth::set(message, "data.mustChangePassword", false));
  if (!conforms(BEConfig::VALIDATION_ON_RESPONSE, message, "GATEWAY_LOGIN_RESP")) {
    sessions_.close(token);
    return answer(500, "the response does not conform to its schema", {});
  }
  Reply reply = jsonReply(200, message);
  setCookie(reply, kToken, token, "; Path=/api/v1");
  setCookie(reply, kMark, verdict.mark, kYear);
  return reply;
}

void Login::setCookie(Reply& reply, const char* name, const std::string& value,
                      const char* more) const {
  reply.headers.emplace_back("Set-Cookie", std::string(name) + "=" + value +
                                               "; HttpOnly; SameSite=Strict" +
                                               (isSecure_ ? "; Secure" : "") + more);
}
