#include "examples/gatewayd/login.h"

#include <memory>

#include "examples/backend.h"
#include "examples/gatewayd/messages.h"

LoginResult Login::attempt(const std::string& request, const std::string& address) {
  const Handle message(new TreeMapObject(false));
  message->set("messageId", 1);
  const Handle data(JsonData::createObject(request.c_str()));
  if (data == nullptr || json_object_is_type(data->jobj, json_type_object) == 0) {
    return answer(400, "", "the request is no JSON object", 0);
  }
  message->set("data", data.get());
  message->set("data.address", address.c_str());
  if (!conforms(BEConfig::VALIDATION_ON_REQUEST, *message, API_GATEWAY, "GATEWAY_LOGIN_REQ")) {
    return answer(422, "", "the login request does not conform to its schema", 0);
  }

  const std::lock_guard<std::mutex> lock(oneAtATime_);
  const unsigned int wait = BELoginRecord::getAttempt(address.c_str()).waitMinutes;
  if (wait > 0) {
    return answer(429, "", "too many attempts", wait);
  }
  // Counted before the password is looked at: whatever happens next, the attempt was made.
  BELoginRecord::setAttempt(address.c_str());
  if (!isRight(*message)) {
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

bool Login::isRight(TreeMapObject& message) const {
  const char* user = nullptr;
  const char* password = nullptr;
  const bool isComplete =
      message.get_ex("data.user", user) && message.get_ex("data.password", password);
  return isComplete && static_cast<int>(equalInConstantTime(user, user_)) +
                               static_cast<int>(equalInConstantTime(password, password_)) ==
                           2;
}

LoginResult Login::answer(int status, const std::string& token, const char* text,
                          unsigned int waitMinutes) const {
  const Handle message(new TreeMapObject(false));
  message->set("messageId", 2);
  message->set("status.code", status == 200 ? 0 : 1);
  message->set("status.text", text);
  message->set("data.waitMinutes", waitMinutes);
  const std::shared_ptr<Session> session = sessions_.find(token);
  if (session != nullptr) {
    message->set("data.session", session->databases->key().c_str());
    message->set("data.role", "administrator");
    message->set("data.expiresInSeconds", static_cast<int>(sessions_.idleLimit().count()));
    message->set("data.mustChangePassword", false);
    if (!conforms(BEConfig::VALIDATION_ON_RESPONSE, *message, API_GATEWAY, "GATEWAY_LOGIN_RESP")) {
      sessions_.close(token);
      return answer(500, "", "the response does not conform to its schema", 0);
    }
  }
  return {status, token, json_object_to_json_string_ext(message->jobj, JSON_C_TO_STRING_PLAIN),
          waitMinutes};
}
