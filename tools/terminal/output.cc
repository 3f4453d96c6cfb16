// The library prints its log on standard output. To keep that out of results, the command's output
// moves to a new descriptor at the very start, and descriptor 1 becomes a second standard error.
#include "tools/terminal/output.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "base/write_all.h"
#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// The codes that select a colour on a terminal, in the order of Ink.
constexpr const char* kColours[] = {"", "34;1", "32", "36", "35", "32", "31;1", "2"};

// A full pipe that does not block counts as one that cannot be written, without waiting for room.
bool writeText(int fd, std::string_view text) {
  return writeAll(fd, text.data(), text.size(), 0);
}

// Opens each missing standard descriptor the wrong way round, input for writing and output for
// reading: whoever uses it gets an error, as from a descriptor that is missing.
void fillStandardDescriptors() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    if (fcntl(fd, F_GETFD) < 0) {
      static_cast<void>(open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
  }
}

// False when the user has said so (NO_COLOR), or when the terminal knows no colours.
bool wantsColour() {
  const char* const unwanted = getenv("NO_COLOR");
  const char* const terminal = getenv("TERM");
  return (unwanted == nullptr || *unwanted == '\0') &&
         (terminal == nullptr || strcmp(terminal, "dumb") != 0);
}

}  // namespace

// The output's new descriptor lies above the standard three, which are all there by then.
Output::Output() {
  signal(SIGPIPE, SIG_IGN);  // a closed pipe shows as EPIPE in finish()
  fillStandardDescriptors();
  isTerminal_ = isatty(STDOUT_FILENO) == 1;
  hasColour_ = isTerminal_ && wantsColour();
  fd_ = UniqueFd(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  dup2(STDERR_FILENO, STDOUT_FILENO);
}

// A terminal that does not know its size has 0 columns.
std::size_t Output::columns() const {
  winsize size = {};
  const bool isKnown = isTerminal_ && ioctl(fd_.get(), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : std::string::npos;
}

std::string Output::inked(Ink ink, std::string_view text) const {
  if (!hasColour_ || ink == Ink::kPlain || text.empty()) {
    return std::string(text);
  }
  return "\x1b[" + std::string(kColours[static_cast<int>(ink)]) + "m" + std::string(text) +
         "\x1b[0m";
}

std::string Output::foreign(std::string_view text) const {
  return isTerminal_ ? escaped(text, Escapes::kTerminal) : std::string(text);
}

// Writing late has a price: an output that fails is told after an edit has been saved.
void Output::finish() {
  if (!writeText(fd_.get(), buffer_)) {
    // Whoever closed the pipe has read enough and needs no message.
    throw Failure(Exit::kIo,
                  errno == EPIPE ? "" : std::string("standard output: ") + strerror(errno));
  }
  buffer_.clear();
}

void complain(std::string_view text) {
  if (text.empty()) {
    return;
  }
  complainWith("hearth: " + escaped(text, Escapes::kTerminal));
}

void complainWith(std::string_view line) {
  static_cast<void>(writeText(STDERR_FILENO, std::string(line) + "\n"));
}

}  // namespace hearth::tool
