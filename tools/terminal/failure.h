// How a command ends that cannot do what it was asked: with an exit code and one line of text.
#ifndef HEARTH_TOOLS_TERMINAL_FAILURE_H
#define HEARTH_TOOLS_TERMINAL_FAILURE_H

#include <stdexcept>
#include <string>

namespace hearth::tool {

// The exit codes of the command; the help in tools/main.cc tells them to users.
enum class Exit : int {
  kDone = 0,
  kNo = 1,        // not found, does not conform, a problem was found
  kUsage = 2,     // the command line makes no sense
  kIo = 3,        // a file cannot be read, parsed or written
  kConflict = 4,  // somebody else is changing the file
};

// Ends a command. The text says what is wrong, where, and what to do; main puts "hearth: " in
// front. An empty text ends it without a line.
class Failure : public std::runtime_error {
 public:
  Failure(Exit exit, const std::string& text) : std::runtime_error(text), exit_(exit) {}
  Exit exit() const { return exit_; }

 private:
  Exit exit_;
};

}  // namespace hearth::tool

#endif
