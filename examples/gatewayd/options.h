// The command line.
#ifndef HEARTH_EXAMPLES_GATEWAYD_OPTIONS_H
#define HEARTH_EXAMPLES_GATEWAYD_OPTIONS_H

#include <string>

// How the program ends when it does not serve. A supervisor need not start it again after
// kUsage and kConfiguration: only a person can help.
namespace exit_status {
constexpr int kFailure = 1;         // the port is in use, a folder cannot be entered
constexpr int kUsage = 64;          // the usual numbers for these two
constexpr int kConfiguration = 78;  // no configuration, or one that cannot be read
}  // namespace exit_status

struct Options {
  std::string data;
  std::string config = "data/gateway.conf";
  std::string pages = GATEWAYD_PAGES;
  std::string certificate;
  std::string key;
  std::string origin;
  int port = 8080;
};

// Ends the program with one line on standard error.
[[noreturn]] void stop(int status, const std::string& problem);

// Reads the arguments; --help and mistakes end the program.
Options readOptions(int count, char** arguments);

#endif
