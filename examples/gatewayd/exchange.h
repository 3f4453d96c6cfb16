// A request and its answer as the handlers see them: nothing here knows the library that brings
// them over the network.
#ifndef HEARTH_EXAMPLES_GATEWAYD_EXCHANGE_H
#define HEARTH_EXAMPLES_GATEWAYD_EXCHANGE_H

#include <hearth/kit.h>

#include <string>
#include <utility>
#include <vector>

struct Request {
  std::string method;
  std::string path;     // as it was sent, up to a '?', escapes and all
  std::string address;  // of the client, as it is counted (addresses.h)
  std::vector<std::pair<std::string, std::string>> headers;  // names in small letters
  std::string body;

  // The value of a header; empty when there is none.
  std::string header(const char* name) const;
  bool has(const char* name) const;
};

struct Reply {
  int status = 204;
  std::string body;  // none when empty
  const char* type = "application/json";
  std::vector<std::pair<const char*, std::string>> headers;
};

// An answer with a JSON value.
Reply jsonReply(int status, hearth::View value);

// A refusal: {"error": sentence}.
Reply refusal(int status, const std::string& sentence);

#endif
