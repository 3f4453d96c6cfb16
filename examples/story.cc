// The transcript's output; see story.h.
#include "story.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

Story::~Story() {
  if (out_ != nullptr) {
    std::fclose(out_);
  }
}

bool Story::begin(const char* consoleFile) {
  const int terminal = dup(STDOUT_FILENO);
  out_ = terminal < 0 ? nullptr : fdopen(terminal, "w");
  if (out_ == nullptr) {
    std::perror("cannot keep the terminal for the transcript");
    return false;
  }
  if (std::freopen(consoleFile, "w", stdout) == nullptr) {
    std::perror(consoleFile);
    return false;
  }
  return true;
}

void Story::chapter(const char* title) {
  std::fprintf(out_, "\n%d. %s\n", ++chapters_, title);
  std::fflush(out_);
}

void Story::tell(const std::string& text) {
  std::fprintf(out_, "   %s\n", text.c_str());
}

bool Story::check(bool ok, const std::string& text) {
  ++checks_;
  failed_ += ok ? 0 : 1;
  std::fprintf(out_, "   %s %s\n", ok ? "✓" : "✗ NOT SO:", text.c_str());
  return ok;
}

void Story::showFile(const char* path, const char* from, int lines) {
  std::fprintf(out_, "   %s now has:\n", path);
  std::ifstream file(path);
  std::string line;
  bool found = false;
  for (int shown = 0; shown < lines && std::getline(file, line);) {
    found = found || line.find(from) != std::string::npos;
    if (found) {
      std::fprintf(out_, "     | %s\n", line.c_str());
      ++shown;
    }
  }
  if (!found) {
    check(false, std::string("a line with ") + from);
  }
}

int Story::end(const std::string& lastWords) {
  std::fprintf(out_, "\n%d chapters, %d checks, %d not met.\n%s", chapters_, checks_, failed_,
               lastWords.c_str());
  const bool written = std::fflush(out_) == 0;
  if (!written) {
    std::perror("the transcript is incomplete");
  }
  return failed_ == 0 && checks_ > 0 && written ? EXIT_SUCCESS : EXIT_FAILURE;
}

std::string quoted(const char* text) {
  return text == nullptr ? "nothing" : '"' + std::string(text) + '"';
}

std::string contentOf(const char* path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

std::string lastLineOf(const char* path) {
  std::ifstream file(path);
  std::string last;
  for (std::string line; std::getline(file, line);) {
    last = line;
  }
  return last;
}
