// What tests of files and processes share: a folder of their own, whole files as texts, and work
// done in a child process whose output and end are looked at.
#ifndef HEARTH_TESTS_SUPPORT_SCRATCH_H
#define HEARTH_TESTS_SUPPORT_SCRATCH_H

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <string>

namespace hearth {

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
  explicit Scratch(const std::string& place = "/tmp")
      : before_(std::filesystem::current_path()), folder_(place + "/hearth-test-XXXXXX") {
    mkdtemp(folder_.data());
    std::filesystem::current_path(folder_);
  }
  ~Scratch() override {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

  const std::string& folder() const { return folder_; }

 private:
  const std::filesystem::path before_;
  std::string folder_;
};

struct Ended {
  int status;  // the exit status, or 1000 and the signal's number
  std::string out;
  std::string err;
};

// Does the work in a child, which a minute ends at the latest. Work that returns ends with 0.
inline Ended inChild(const std::function<void()>& work) {
  const std::string prefix = "/tmp/hearth-child-" + std::to_string(getpid());
  const std::string out = prefix + ".out";
  const std::string err = prefix + ".err";
  fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    alarm(60);
    if (freopen(out.c_str(), "w", stdout) != nullptr &&
        freopen(err.c_str(), "w", stderr) != nullptr) {
      work();
      fflush(nullptr);
      _exit(0);
    }
    _exit(99);
  }
  int status = 0;
  waitpid(child, &status, 0);
  Ended ended{WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status), textOf(out),
              textOf(err)};
  unlink(out.c_str());
  unlink(err.c_str());
  return ended;
}

}  // namespace hearth

#endif
