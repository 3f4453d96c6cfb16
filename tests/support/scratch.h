// What tests of files and processes share: a folder to work in, whole files as texts, and work done
// in a child process whose output and end are looked at.
#ifndef HEARTH_TESTS_SUPPORT_SCRATCH_H
#define HEARTH_TESTS_SUPPORT_SCRATCH_H

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <string>

#include "tests/support/temp_dir.h"

inline std::string textOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void putText(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

inline std::set<std::string> namesIn(const std::string& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.insert(entry.path().filename());
  }
  return names;
}

// A new folder, which is the working folder while the test runs.
class Scratch : public testing::Test {
 protected:
  Scratch() { std::filesystem::current_path(folder_.path()); }
  ~Scratch() override { std::filesystem::current_path("/"); }

  const TempDir folder_;
};

// The same in memory, where flushing takes no time.
struct InMemory {
  InMemory() {
    if (access("/dev/shm", W_OK) == 0) {
      setenv("TMPDIR", "/dev/shm", 1);
    }
  }
};
class ScratchInMemory : private InMemory, public Scratch {};

struct Ended {
  int status;  // the exit status, or 1000 and the signal's number
  std::string out, err;
};

// Does the work in a child, which a minute ends at the latest. Work that returns ends with 0.
inline Ended inChild(const std::function<void()>& work) {
  const TempDir outputs;
  fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    alarm(60);
    if (freopen((outputs / "out").c_str(), "w", stdout) != nullptr &&
        freopen((outputs / "err").c_str(), "w", stderr) != nullptr) {
      work();
      fflush(nullptr);
    }
    exit(0);  // also writes what a coverage build has counted
  }
  int status = 0;
  waitpid(child, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status),
          outputs.contentsOf("out"), outputs.contentsOf("err")};
}

#endif
