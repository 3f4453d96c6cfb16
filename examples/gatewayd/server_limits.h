// What a client may use up, in one table: every limit of the server and what happens at it. The
// README of this folder shows the same rows to whoever runs it.
#ifndef HEARTH_EXAMPLES_GATEWAYD_SERVER_LIMITS_H
#define HEARTH_EXAMPLES_GATEWAYD_SERVER_LIMITS_H

#include <chrono>
#include <cstddef>

namespace limits {

using std::chrono::seconds;

// Connections. Beyond either number, the one that has kept the server waiting longest without a
// session is ended, not the new one refused: whoever holds connections open shuts nobody out.
constexpr unsigned int kConnections = 64;
constexpr unsigned int kConnectionsOfAddress = 48;

// Of a connection: the library's buffer, which holds a request's head. A larger head is answered
// with 431, or 414 where it is the path.
constexpr std::size_t kConnectionMemory = std::size_t{16} * 1024;
constexpr std::size_t kPath = 512;  // 414

// Of a body: refused by its announced length (413); one without a length is refused at once (411).
constexpr std::size_t kBody = std::size_t{64} * 1024;

// A connection ends after so long without a byte, and so long after it began or was last answered:
// a byte a second does not keep it.
constexpr seconds kIdle{10};
constexpr seconds kRequest{20};

// Threads that work on requests: for the store, and for passwords. A password takes 16 MiB and a
// core while it is hashed, so one at a time.
constexpr unsigned int kStoreThreads = 3;
constexpr unsigned int kPasswordThreads = 1;
constexpr unsigned long kHashCost = 5;  // of yescrypt

// How long a request waits for another one that holds its area (423).
constexpr seconds kPatience{1};

// Sessions. A user's own oldest one gives way to a new one; beyond all, 503.
constexpr std::size_t kSessionsOfUser = 8;
constexpr std::size_t kSessions = 16;

// Of an area's document, as JSON without blanks (413); of one JSON patch (413).
constexpr std::size_t kDocument = std::size_t{256} * 1024;
constexpr std::size_t kPatchSteps = 256;

// Log-ins (429). So many are free, for an address or a browser that has logged in before, and for a
// name from all others together; then one is tried at a time, with a pause that grows.
constexpr int kFreeLogins = 4;
constexpr int kFreeLoginsOfName = 20;
constexpr seconds kLoginPause{5};
constexpr seconds kLongestLoginPause{60};
constexpr seconds kLoginMemory{3600};           // without an attempt, the counts start anew
constexpr std::size_t kCountedAddresses = 256;  // further ones are counted as one
constexpr std::size_t kCountedNames = 64;       // further ones are counted as one
constexpr std::size_t kBrowsersOfUser = 8;      // that are known to have logged in

// Of the pages' folder, all files together: it is held in memory.
constexpr std::size_t kPages = std::size_t{2} * 1024 * 1024;

}  // namespace limits

#endif
