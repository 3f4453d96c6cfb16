// How often somebody may try to log in, so that passwords cannot be guessed and nobody can lock the
// owner out.
//
// Attempts are counted for the client's address, and for the name that is tried; where hearth's
// login records run, an address that waits there waits here too. Beyond what is free, the door is
// not shut but slow: one attempt is let through after each pause, which grows to a minute. Whoever
// floods it makes it slower for that address and that name.
//
// A browser that has logged in before brings a mark of it, a secret of its own for one user. Its
// attempts are counted by that mark alone: others cannot slow it down.
#ifndef HEARTH_EXAMPLES_GATEWAYD_LOGIN_LIMIT_H
#define HEARTH_EXAMPLES_GATEWAYD_LOGIN_LIMIT_H

#include <chrono>
#include <deque>
#include <map>
#include <mutex>
#include <string>

class LoginLimit {
 public:
  using Clock = std::chrono::steady_clock;

  struct Attempt {
    std::string address;  // as countedAddress
    std::string user;     // as tried; there need not be one of this name
    std::string mark;     // of the browser; empty for none
  };

  // How long to wait. Zero: the attempt may be made now, and is counted as one that failed until it
  // succeeds.
  std::chrono::seconds admit(const Attempt& attempt, Clock::time_point now = Clock::now());

  // The attempt that was admitted was right: its counts are gone. Result: the mark that the browser
  // shall bring from now on, a new one where it had none.
  std::string succeeded(const Attempt& attempt);

  // The attempt was neither right nor wrong, as the users could not be read. It is not counted.
  void takeBack(const Attempt& attempt);

  // How long the next attempt of this kind has to wait.
  std::chrono::seconds wait(const Attempt& attempt, Clock::time_point now = Clock::now());

 private:
  struct Count {
    int attempts = 0;
    Clock::time_point last;
  };
  using Counts = std::map<std::string, Count>;

  bool isMarked(const Attempt& attempt) const;
  Count& countOf(const Attempt& attempt, Clock::time_point now);
  std::chrono::seconds waitNow(const Attempt& attempt, Clock::time_point now);
  static Count& countIn(Counts& counts, const std::string& key, std::size_t most,
                        Clock::time_point now);

  std::mutex mutex_;
  Counts addresses_;                                        // guarded by mutex_, as all below
  Counts names_;                                            // of unmarked attempts
  Counts marks_;                                            // of marked ones
  std::map<std::string, std::deque<std::string>> marksOf_;  // by user, oldest first
};

#endif
