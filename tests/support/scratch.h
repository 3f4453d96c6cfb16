// Tools of tests that work with files, processes and threads: a scratch folder, whole files as
// texts, and work done in a child process, in threads, or on a small stack.
#ifndef HEARTH_TESTS_SUPPORT_SCRATCH_H
#define HEARTH_TESTS_SUPPORT_SCRATCH_H

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <thread>
#include <vector>

// The whole file; an empty text where there is none.
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

// A new folder, removed with its contents at the end of its scope.
class TempDir {
 public:
  explicit TempDir(const std::string& parent = std::filesystem::temp_directory_path())
      : path_(parent + "/hearth-XXXXXX") {
    EXPECT_NE(nullptr, mkdtemp(path_.data())) << path_;
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }

  // Makes a file with these contents, and its folder. Answers its whole path.
  std::string file(const std::string& name, const std::string& contents) const {
    const std::filesystem::path path = *this / name;
    std::filesystem::create_directories(path.parent_path());
    putText(path, contents);
    return path;
  }
  std::string contentsOf(const std::string& name) const { return textOf(*this / name); }

 private:
  std::string path_;
};

// The fixture of a test in a new folder, which is the working folder while the test runs.
class Scratch : public testing::Test {
 protected:
  explicit Scratch(const std::string& parent = std::filesystem::temp_directory_path())
      : folder_(parent) {
    std::filesystem::current_path(folder_.path());
  }
  ~Scratch() override { std::filesystem::current_path("/"); }

  const TempDir folder_;
};

// A scratch folder in memory, where flushing takes no time.
class ScratchInMemory : public Scratch {
 protected:
  ScratchInMemory()
      : Scratch(access("/dev/shm", W_OK) == 0 ? "/dev/shm"
                                              : std::filesystem::temp_directory_path().string()) {}
};

// Does the work and answers what it writes to standard output.
inline std::string printed(const std::function<void()>& work) {
  testing::internal::CaptureStdout();
  work();
  return testing::internal::GetCapturedStdout();
}

struct Ended {
  int status;  // the exit status, or 1000 and the signal's number
  std::string out, err;
};

// Does the work in a child process, which a minute ends at the latest. Work that returns ends it
// with status 0.
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

// Does the work in so many threads at once, and gives each its number. Waits for all of them.
inline void inThreads(unsigned int count, const std::function<void(unsigned int)>& work) {
  std::vector<std::thread> threads;
  for (unsigned int number = 0; number < count; ++number) {
    threads.emplace_back(work, number);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

// Does the work on a thread with a stack as small as the backend's threads have, and waits for it.
inline void onSmallStack(std::function<void()> work) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 128 * 1024);
  const auto run = [](void* start) -> void* {
    (*static_cast<std::function<void()>*>(start))();
    return nullptr;
  };
  pthread_t thread;
  ASSERT_EQ(0, pthread_create(&thread, &attributes, run, &work));
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

#endif
