// How a command ends that cannot do what it was asked: with an exit code and one line of text, or
// with the same as JSON for programs.
#ifndef HEARTH_TOOLS_TERMINAL_FAILURE_H
#define HEARTH_TOOLS_TERMINAL_FAILURE_H

#include <stdexcept>
#include <string>
#include <vector>

#include "hearth/kit/result.h"

namespace hearth::tool {

// The exit codes of the command; the help in tools/main.cc tells them to users.
enum class Exit : int {
  kDone = 0,
  kNo = 1,         // not found, a problem was found
  kUsage = 2,      // the command line makes no sense
  kIo = 3,         // a file cannot be read, parsed or written
  kConflict = 4,   // somebody else is changing the file, or has changed the value
  kViolation = 5,  // a document does not conform to its schema
};

// Ends a command. The text says what is wrong, where, and what to do; main puts "hearth: " in
// front. An empty text ends it without a line.
class Failure : public std::runtime_error {
 public:
  Failure(Exit exit, const std::string& text) : std::runtime_error(text), exit_(exit) {}
  Failure(Exit exit, const std::string& text, std::vector<BrokenRule> brokenRules)
      : std::runtime_error(text), broken(std::move(brokenRules)), exit_(exit) {}

  Exit exit() const { return exit_; }

  // For programs, each empty where it is not known: the area or file and the path as the command
  // line has them, and the rules that a document breaks.
  std::string area, path;
  std::vector<BrokenRule> broken;

 private:
  Exit exit_;
};

// Prints a failure on standard error, as a line for people or as one JSON object. Prints nothing
// for a failure without a text.
void complainOf(const Failure& failure, bool asJson);

}  // namespace hearth::tool

#endif
