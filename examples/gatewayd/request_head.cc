#include "request_head.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "server_limits.h"

namespace {

// Said once, or not at all: two of them are read differently by different programs.
constexpr const char* kSingleHeaders[] = {
    "host",   "content-length", "content-type", "content-encoding", "transfer-encoding",
    "cookie", "origin",         "expect",       "connection"};

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> texts) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

bool areDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(),
                                      [](unsigned char c) { return std::isdigit(c) != 0; });
}

std::string inSmallLetters(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::string trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t");
  const std::size_t end = text.find_last_not_of(" \t");
  return start != text.npos ? std::string(text.substr(start, end - start + 1)) : "";
}

// Letters, digits and a few signs: no blank, with which some would and some would not take
// "Content-Length : 7" for a length.
bool isName(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 ||
           std::string_view("!#$%&'*+-.^_`|~").find(static_cast<char>(c)) != std::string_view::npos;
  });
}

bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](unsigned char c) { return (c >= ' ' && c != 0x7F) || c == '\t'; });
}

bool isAmbiguous(const Request& request) {
  for (const char* const name : kSingleHeaders) {
    if (std::count_if(request.headers.begin(), request.headers.end(),
                      [name](const auto& header) { return header.first == name; }) > 1) {
      return true;
    }
  }
  return std::any_of(request.headers.begin(), request.headers.end(), [](const auto& header) {
    return !isName(header.first) || !isPlain(header.second);
  });
}

// A page of another site may send requests here too, by a name of its own that leads to this
// machine. Only our own names are answered, to the letter.
bool isOurName(const std::string& host, const std::string& ownOrigin) {
  if (!ownOrigin.empty() && "https://" + host == ownOrigin) {
    return true;
  }
  const std::size_t colon = std::min(host.find(':'), host.size());
  const std::string_view port = std::string_view(host).substr(colon);
  return isOneOf(host.substr(0, colon), {"127.0.0.1", "localhost"}) &&
         (port.empty() || (port.size() <= 6 && areDigits(port.substr(1))));
}

bool isOurOrigin(const Request& request, const std::string& ownOrigin) {
  const std::string host = request.header("host");
  const std::string origin = request.header("origin");
  return origin == "http://" + host || origin == "https://" + host ||
         (!ownOrigin.empty() && origin == ownOrigin);
}

bool changes(const Request& request) {
  return !isOneOf(request.method, {"GET", "HEAD"});
}

bool bringsBody(const Request& request) {
  return isOneOf(request.method, {"POST", "PUT", "PATCH"});
}

std::optional<Reply> refuseTarget(const Request& request) {
  if (request.path.size() > limits::kPath) {
    return refusal(414, "the path is too long");
  }
  if (request.path.empty() || request.path[0] != '/' || !isPlain(request.path) ||
      request.path.find(' ') != request.path.npos) {
    return refusal(400, "the target is no path");
  }
  const bool isAllowed =
      isForApi(request) ? changes(request) || request.method == "GET" : !changes(request);
  if (!isAllowed || !isOneOf(request.method, {"GET", "HEAD", "POST", "PUT", "PATCH", "DELETE"})) {
    return refusal(405, "this method is not for this path");
  }
  return std::nullopt;
}

std::optional<Reply> refuseOrigin(const Request& request, const std::string& ownOrigin) {
  if (!isOurName(request.header("host"), ownOrigin)) {
    return refusal(403, "this server answers as 127.0.0.1 and localhost only");
  }
  if (changes(request) && request.has("origin") && !isOurOrigin(request, ownOrigin)) {
    return refusal(403, "a page of another site may change nothing here");
  }
  return std::nullopt;
}

// Bodies come plain, with their length said, and only where they mean something.
std::optional<Reply> refuseBody(const Request& request) {
  const std::string length = request.header("content-length");
  const bool isEmpty = length.empty() || length == "0";
  if (request.has("transfer-encoding") || (bringsBody(request) && length.empty())) {
    return refusal(411, "the length of the body must be said");
  }
  if (request.has("content-length") && !areDigits(length)) {
    return refusal(400, "the length of the body is no number");
  }
  if (length.size() > 9 || (!isEmpty && std::stoul(length) > limits::kBody)) {
    return refusal(413, "the body is too large");
  }
  if (!bringsBody(request)) {
    return isEmpty ? std::nullopt : std::optional<Reply>(refusal(400, "this method takes no body"));
  }
  if (!isOneOf(inSmallLetters(request.header("content-encoding")), {"", "identity"})) {
    return refusal(415, "the body must not be compressed");
  }
  const std::string type = mediaType(request);
  if (type != kJson && !(request.method == "PATCH" && type == kJsonPatch)) {
    return refusal(415, "the body must be application/json");
  }
  return std::nullopt;
}

}  // namespace

bool isForApi(const Request& request) {
  return request.path.rfind(kApi, 0) == 0;
}

std::optional<Reply> refuseHead(const Request& request, const std::string& ownOrigin) {
  std::optional<Reply> refused = refuseTarget(request);
  if (!refused && isAmbiguous(request)) {
    refused = refusal(400, "a header is malformed, or stands twice");
  }
  if (!refused) {
    refused = refuseOrigin(request, ownOrigin);
  }
  return refused ? refused : refuseBody(request);
}

std::string mediaType(const Request& request) {
  const std::string whole = inSmallLetters(request.header("content-type"));
  const std::size_t end = std::min(whole.find(';'), whole.size());
  const std::string parameter =
      trimmed(std::string_view(whole).substr(std::min(end + 1, whole.size())));
  if (end != whole.size() && !isOneOf(parameter, {"charset=utf-8", "charset=\"utf-8\""})) {
    return "";
  }
  return trimmed(std::string_view(whole).substr(0, end));
}

std::string cookie(const Request& request, const std::string& name) {
  const std::string cookies = request.header("cookie");
  for (std::size_t start = 0; start < cookies.size();) {
    const std::size_t end = std::min(cookies.find(';', start), cookies.size());
    const std::string pair = trimmed(std::string_view(cookies).substr(start, end - start));
    const std::size_t equals = pair.find('=');
    if (equals != pair.npos && pair.substr(0, equals) == name) {
      return pair.substr(equals + 1);
    }
    start = end + 1;
  }
  return "";
}

void addCommonHeaders(const Request& request, Reply& reply) {
  reply.headers.emplace_back("X-Content-Type-Options", "nosniff");
  reply.headers.emplace_back("Referrer-Policy", "no-referrer");
  reply.headers.emplace_back("X-Frame-Options", "DENY");
  reply.headers.emplace_back("Content-Security-Policy",
                             "default-src 'self'; base-uri 'none'; form-action 'self'; "
                             "frame-ancestors 'none'");
  reply.headers.emplace_back("Cache-Control", isForApi(request) ? "no-store" : "no-cache");
}
