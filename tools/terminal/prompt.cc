// While a secret is typed the terminal does not echo, and it must not stay so, whatever ends the
// command. So for that time each signal that would end or stop it is only noted, and let in only
// while the command waits for input; the terminal is put back, and then the signal does what it
// would have done. After a stop the question is asked anew.
#include "tools/terminal/prompt.h"

#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <iterator>

#include "base/write_all.h"
#include "tools/document/input.h"
#include "tools/terminal/failure.h"

namespace hearth::tool {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};

volatile sig_atomic_t noted = 0;

void note(int signal) {
  noted = signal;
}

void say(const char* text) {
  static_cast<void>(writeAll(STDERR_FILENO, text, strlen(text), 0));
}

// The terminal without echo, and the signals noted, for a scope. The line end is echoed: it shows
// that the answer was taken.
class Silence {
 public:
  Silence() {
    noted = 0;
    struct sigaction noting = {};
    noting.sa_handler = note;
    sigset_t held;
    sigemptyset(&held);
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
      sigaction(kSignals[i], &noting, &former_[i]);
      if (former_[i].sa_handler == SIG_IGN) {  // whoever started the command wants it so
        sigaction(kSignals[i], &former_[i], nullptr);
      }
      sigaddset(&held, kSignals[i]);
    }
    sigprocmask(SIG_BLOCK, &held, &formerMask_);
    isSilent_ = tcgetattr(STDIN_FILENO, &echoing_) == 0;
    termios silent = echoing_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHOE | ECHOK);
    silent.c_lflag |= ECHONL;
    isSilent_ = isSilent_ && tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent) == 0;
  }
  ~Silence() {
    if (isSilent_) {
      tcsetattr(STDIN_FILENO, TCSAFLUSH, &echoing_);
    }
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
      sigaction(kSignals[i], &former_[i], nullptr);
    }
    sigprocmask(SIG_SETMASK, &formerMask_, nullptr);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

  bool isSilent() const { return isSilent_; }

  // Waits for input. False when a signal comes first.
  bool waitForInput() const {
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    return noted == 0 && ppoll(&input, 1, nullptr, &formerMask_) == 1;
  }

 private:
  sigset_t formerMask_ = {};
  struct sigaction former_[std::size(kSignals)] = {};
  termios echoing_ = {};
  bool isSilent_ = false;
};

// Reads up to the end of the line. False when a signal or the end of input comes first.
bool readLine(const Silence& silence, std::string& line) {
  char c = 0;
  ssize_t got = 0;
  while (silence.waitForInput() && (got = read(STDIN_FILENO, &c, 1)) == 1) {
    if (c == '\n') {
      return true;
    }
    line += c;
  }
  if (got < 0) {
    throw Failure(Exit::kIo, std::string("standard input: ") + strerror(errno));
  }
  return false;
}

// Asks until there is an answer. A noted signal is raised when the terminal is as it was: most end
// the command there, others stop it for a while.
std::string ask(const char* question) {
  for (;;) {
    std::string answer;
    bool isAnswered = false;
    {
      const Silence silence;
      if (!silence.isSilent()) {
        throw Failure(Exit::kIo, "the terminal cannot be kept from showing what is typed");
      }
      say(question);
      isAnswered = readLine(silence, answer);
    }
    if (noted != 0) {
      say("\n");
      raise(noted);
    } else if (isAnswered) {
      return answer;
    } else {
      throw Failure(Exit::kUsage, "there is no answer; nothing is changed");
    }
  }
}

// A line feed, or a carriage return and a line feed.
void cutLineEnd(std::string& text) {
  for (const char end : {'\n', '\r'}) {
    if (!text.empty() && text.back() == end) {
      text.pop_back();
    } else {
      return;
    }
  }
}

}  // namespace

std::string readSecret() {
  if (isatty(STDIN_FILENO) == 0) {
    std::string text = readWhole("-");
    cutLineEnd(text);
    return text;
  }
  std::string answer = ask("secret: ");
  if (ask("once more: ") != answer) {
    throw Failure(Exit::kUsage, "the two answers differ; nothing is changed");
  }
  return answer;
}

}  // namespace hearth::tool
