#include "exchange.h"

#include <algorithm>

namespace {

auto findHeader(const Request& request, const char* name) {
  return std::find_if(request.headers.begin(), request.headers.end(),
                      [name](const auto& header) { return header.first == name; });
}

}  // namespace

std::string Request::header(const char* name) const {
  const auto found = findHeader(*this, name);
  return found != headers.end() ? found->second : "";
}

bool Request::has(const char* name) const {
  return findHeader(*this, name) != headers.end();
}

Reply jsonReply(int status, hearth::View value) {
  Reply reply;
  reply.status = status;
  reply.body = hearth::toText(value);
  return reply;
}

Reply refusal(int status, const std::string& sentence) {
  const hearth::Value message = hearth::newObject();
  static_cast<void>(hearth::set(message, "error", sentence));
  return jsonReply(status, message);
}
