#include "addresses.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstring>

namespace {

std::string textOf(int family, const void* address) {
  char text[INET6_ADDRSTRLEN] = "";
  return inet_ntop(family, address, text, sizeof text) != nullptr ? text : "";
}

}  // namespace

std::string countedAddress(const sockaddr* address) {
  if (address != nullptr && address->sa_family == AF_INET) {
    sockaddr_in whole = {};
    std::memcpy(&whole, address, sizeof whole);
    return textOf(AF_INET, &whole.sin_addr);
  }
  if (address == nullptr || address->sa_family != AF_INET6) {
    return "";
  }
  sockaddr_in6 whole = {};
  std::memcpy(&whole, address, sizeof whole);
  unsigned char* const bytes = whole.sin6_addr.s6_addr;
  if (IN6_IS_ADDR_V4MAPPED(&whole.sin6_addr)) {
    return textOf(AF_INET, bytes + 12);
  }
  std::memset(bytes + 8, 0, 8);
  return textOf(AF_INET6, bytes);
}
