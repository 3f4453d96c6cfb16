// The line is written over itself: "\r" goes to its start, "\x1b[K" clears it.
#include "tools/terminal/progress.h"

#include <unistd.h>

#include "base/write_all.h"
#include "tools/terminal/text.h"

namespace hearth::tool {
namespace {

void show(const std::string& text) {
  const std::string line = "\r\x1b[K" + text;
  static_cast<void>(writeAll(STDERR_FILENO, line.data(), line.size(), 0));
}

}  // namespace

Progress::Progress(std::string verb)
    : verb_(std::move(verb)), isSeen_(isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
  if (isShown_) {
    show("");
  }
}

void Progress::at(const std::string& piece) {
  if (isSeen_ && Clock::now() - start_ > std::chrono::seconds(1)) {
    show(verb_ + " " + inQuotes(piece));
    isShown_ = true;
  }
}

}  // namespace hearth::tool
