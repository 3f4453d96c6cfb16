// What a request's head may look like. It is judged before a byte of the body is taken, and a
// request that is refused here ends its connection, so that nobody ever argues about where its body
// ends and the next request begins.
#ifndef HEARTH_EXAMPLES_GATEWAYD_REQUEST_HEAD_H
#define HEARTH_EXAMPLES_GATEWAYD_REQUEST_HEAD_H

#include <optional>
#include <string>

#include "exchange.h"

// The media types that a body may have.
constexpr char kJson[] = "application/json";
constexpr char kJsonPatch[] = "application/json-patch+json";

constexpr char kApi[] = "/api/v1/";
bool isForApi(const Request& request);

// Why the request is refused: its target, its names, how it brings its body, where it comes from.
// `ownOrigin` is the origin of a server in front of this one, "https://router.example", or empty.
std::optional<Reply> refuseHead(const Request& request, const std::string& ownOrigin);

// The media type of the body, in small letters and without parameters; empty for one that is
// malformed or in another character set than UTF-8.
std::string mediaType(const Request& request);

// The value of a cookie; empty when there is none of exactly this name.
std::string cookie(const Request& request, const std::string& name);

// What every answer says to the browser about itself.
void addCommonHeaders(const Request& request, Reply& reply);

#endif
