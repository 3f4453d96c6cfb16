// What the library finds around it: its files, and the switches of its log.
#ifndef HEARTH_BENCH_SURROUNDINGS_H
#define HEARTH_BENCH_SURROUNDINGS_H

namespace bench {

// A database whose area API_WIFI holds gatewayText() and the others "{}", with the sessions
// "session-0", "session-1"... beside "default".
void startDatabase(int sessions = 0);

// The log as a gateway ships it, every switch on, as long as this lives; off before and after.
class LogSwitches {
 public:
  enum Target { kConsole, kFileAndConsole };
  explicit LogSwitches(Target target);
  ~LogSwitches();
  LogSwitches(const LogSwitches&) = delete;
  LogSwitches& operator=(const LogSwitches&) = delete;
};

}  // namespace bench

#endif
