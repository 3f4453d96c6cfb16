#include "tools/terminal/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "tools/terminal/failure.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

// In the order of Ink.
constexpr const char* kColours[] = {"", "34;1", "32", "36", "35", "32", "31;1", "2"};

bool writeAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t wrote = write(fd, text.data(), text.size());
    if (wrote < 0 && errno == EINTR) {
      continue;
    }
    if (wrote <= 0) {
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(wrote));
  }
  return true;
}

// A descriptor that is missing is opened the wrong way round: using it is an error, as it should
// be.
void fillStandardDescriptors() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    if (fcntl(fd, F_GETFD) < 0) {
      static_cast<void>(open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
  }
}

bool wantsColour() {
  const char* const unwanted = getenv("NO_COLOR");
  const char* const terminal = getenv("TERM");
  return (unwanted == nullptr || *unwanted == '\0') &&
         (terminal == nullptr || strcmp(terminal, "dumb") != 0);
}

}  // namespace

Output::Output() {
  signal(SIGPIPE, SIG_IGN);
  fillStandardDescriptors();
  isTerminal_ = isatty(STDOUT_FILENO) == 1;
  hasColour_ = isTerminal_ && wantsColour();
  fd_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  dup2(STDERR_FILENO, STDOUT_FILENO);
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

void Output::finish() {
  if (!writeAll(fd_, buffer_)) {
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
  static_cast<void>(writeAll(STDERR_FILENO, "hearth: " + escaped(text, Escapes::kTerminal) + "\n"));
}

}  // namespace hearth::tool
