#include "tools/terminal/question.h"

#include <unistd.h>

#include "base/write_all.h"
#include "tools/terminal/text.h"

namespace hearth::tool {

// A terminal hands over a line at a time, so one reading is the whole answer.
bool ask(const std::string& question) {
  if (isatty(STDIN_FILENO) != 1 || isatty(STDERR_FILENO) != 1) {
    return false;
  }
  const std::string line = "hearth: " + escaped(question, Escapes::kTerminal) + " [y/N] ";
  char answer[256] = "";
  return writeAll(STDERR_FILENO, line.data(), line.size()) &&
         read(STDIN_FILENO, answer, sizeof(answer)) > 0 && (answer[0] == 'y' || answer[0] == 'Y');
}

}  // namespace hearth::tool
