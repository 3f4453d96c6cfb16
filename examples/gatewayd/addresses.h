// Clients' addresses as they are counted: whoever has one IPv6 address has 2^64 of them, so the
// network counts, not the address.
#ifndef HEARTH_EXAMPLES_GATEWAYD_ADDRESSES_H
#define HEARTH_EXAMPLES_GATEWAYD_ADDRESSES_H

#include <sys/socket.h>

#include <string>

// "192.0.2.7" of an IPv4 address, also of one in IPv6's clothes; "2001:db8:0:7::" of an IPv6
// address, its first 64 bits. Empty for another family.
std::string countedAddress(const sockaddr* address);

#endif
