// Random secrets, and the hashes that are kept instead of passwords.
//
// A password is kept as what yescrypt makes of it, "$y$COST$SALT$HASH": a function that takes much
// memory and time on purpose, so that whoever gets the hashes can try few passwords a second.
#ifndef HEARTH_EXAMPLES_GATEWAYD_SECRETS_H
#define HEARTH_EXAMPLES_GATEWAYD_SECRETS_H

#include <string>

// A secret of 128 random bits, as hexadecimal text; empty when the system gives none.
std::string randomSecret();

// The hash of a password, with a salt of its own; empty without memory or randomness.
std::string hashOf(const std::string& password);

// True when the hash is one that isPassword can compare with.
bool isHash(const std::string& hash);

// True when the hash was made from this password. Takes the time of a hash whatever the answer, and
// also when `hash` is none: whether there is such a user cannot be told from the time.
// Cost: a good part of a second on a router, and 16 MiB. Threads: any.
bool isPassword(const std::string& password, const std::string& hash);

#endif
