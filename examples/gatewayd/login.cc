#include "login.h"

#include <memory>

namespace {

bool conforms(int32_t setting, hearth::View message, const char* label) {
  return setting == 0 || hearth::validateMessage(message, API_GATEWAY, label);
}

}  // namespace

LoginResult Login::attempt(const std::string& request, const std::string& address) {
  hearth::Result<hearth::Value> data = hearth::parse(request);
  if (!data || !hearth::View(*data).isObject()) {
    return answer(400, "", "the request is no JSON object", 0);
  }
  const hearth::Value message = hearth::newObject();
  const bool isMade = hearth::set(message, "messageId", 1) &&
                      hearth::set(message, "data", std::move(*data)) &&
                      hearth::set(message, "data.address", address);
  if (!isMade || !conforms(BEConfig::VALIDATION_ON_REQUEST, message, "GATEWAY_LOGIN_REQ")) {
    return answer(422, "", "the login request does not conform to its schema", 0);
  }

  const std::lock_guard<std::mutex> lock(oneAtATime_);
  const unsigned int wait = BELoginRecord::getAttempt(address.c_str()).waitMinutes;
  if (wait > 0) {
    return answer(429, "", "too many attempts", wait);
  }
  // Counted before the password is looked at: whatever happens next, the attempt was made.
  BELoginRecord::setAttempt(address.c_str());
  if (!isRight(message)) {
    const unsigned int nextWait = BELoginRecord::getAttempt(address.c_str()).waitMinutes;
    Logger::print(LOG_WARNING, LOG_GROUP_APIV1_GATEWAY, "GATEWAY_LOGIN_REQ from %s refused\n",
                  address.c_str());
    return answer(nextWait > 0 ? 429 : 401, "", "wrong user or password", nextWait);
  }
  const std::string token = sessions_.open(user_);
  if (token.empty()) {
    return answer(503, "", "too many sessions", 0);
  }
  BELoginRecord::eraseAttempt(address.c_str());
  Logger::print(LOG_INFO, LOG_GROUP_APIV1_GATEWAY, "GATEWAY_LOGIN_REQ from %s accepted\n",
                address.c_str());
  return answer(200, token, "ok", 0);
}

bool Login::isRight(hearth::View message) const {
  const auto user = hearth::get<std::string>(message, "data.user");
  const auto password = hearth::get<std::string>(message, "data.password");
  return user && password &&
         static_cast<int>(equalInConstantTime(*user, user_)) +
                 static_cast<int>(equalInConstantTime(*password, password_)) ==
             2;
}

LoginResult Login::answer(int status, const std::string& token, const char* text,
                          unsigned int waitMinutes) const {
  const hearth::Value message = hearth::newObject();
  const auto put = [&message](const char* path, const auto& value) {
    static_cast<void>(hearth::set(message, path, value));
  };
  put("messageId", 2);
  put("status.code", status == 200 ? 0 : 1);
  put("status.text", text);
  put("data.waitMinutes", waitMinutes);
  const std::shared_ptr<Session> session = sessions_.find(token);
  if (session != nullptr) {
    put("data.session", session->databases.key());
    put("data.role", "administer");
    put("data.expiresInSeconds", sessions_.idleLimit().count());
    put("data.mustChangePassword", false);
    if (!conforms(BEConfig::VALIDATION_ON_RESPONSE, message, "GATEWAY_LOGIN_RESP")) {
      sessions_.close(token);
      return answer(500, "", "the response does not conform to its schema", 0);
    }
  }
  return {status, token, hearth::toText(message), waitMinutes};
}
