// One line on the terminal that says how far a long piece of work has come.
#ifndef HEARTH_TOOLS_TERMINAL_PROGRESS_H
#define HEARTH_TOOLS_TERMINAL_PROGRESS_H

#include <chrono>
#include <string>

namespace hearth::tool {

// Shows nothing for work that takes less than a second, nor where standard error is no terminal.
class Progress {
 public:
  explicit Progress(std::string verb);
  ~Progress();  // takes the line away
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // The work goes on with this piece: "checking data/wifi/wifi.ldb".
  void at(const std::string& piece);

 private:
  using Clock = std::chrono::steady_clock;

  const std::string verb_;
  const bool isSeen_;
  const Clock::time_point start_ = Clock::now();
  bool isShown_ = false;
};

}  // namespace hearth::tool

#endif
