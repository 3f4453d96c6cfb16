// Commands that are killed: at each system call from the first lock on, and at random moments. Each
// file is then the old one or the new one, whole; of a change of several areas all happens or
// nothing; and the same command, run again, succeeds and leaves nothing lying about.
#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <algorithm>
#include <csignal>
#include <random>

#include "tests/support/scratch.h"

namespace {

using Words = std::vector<const char*>;

struct Scenario {
  const char* name;
  Words words;
  bool isOneArea;
};

const Scenario kScenarios[] = {
    {"an edit", {"hearth", "set", "misc", "n", "2", "--no-schema"}, true},
    {"a batch", {"hearth", "batch", "script"}, false},
    {"a restore", {"hearth", "restore", "backup", "--no-schema"}, false},
};

constexpr char kOld[] = "{\"n\":1}";
constexpr char kNew[] = "{\n  \"n\":2\n}";

class InterruptionTest : public ScratchInMemory {
 protected:
  // Made by the command itself, in a store that is then thrown away.
  void prepare() {
    putText("script", "set qos n 2 --no-schema\nset misc n 2 --no-schema\n");
    reset();
    ASSERT_EQ(0, run(kScenarios[1].words));
    ASSERT_EQ(0, run({"hearth", "backup"}, "backup"));
  }

  static void reset() {
    std::filesystem::remove_all("data");
    for (const char* const area : {"qos", "misc"}) {
      std::filesystem::create_directories(std::string("data/") + area);
      putText(fileOf(area), kOld);
    }
  }

  static std::string fileOf(const std::string& area) {
    return "data/" + area + "/" + area + ".ldb";
  }

  static pid_t start(const Words& words, const char* out, bool isTraced) {
    const pid_t child = fork();
    if (child == 0) {
      Words arguments = words;
      arguments.push_back(nullptr);
      dup2(open(out, O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
      dup2(open("err", O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
      if (isTraced) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
      }
      execv(HEARTH_COMMAND, const_cast<char* const*>(arguments.data()));
      _exit(99);
    }
    return child;
  }

  static int run(const Words& words, const char* out = "/dev/null") {
    int status = 0;
    waitpid(start(words, out, false), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  }

  // Runs the command up to its n-th system call behind the first flock. False when it has ended
  // before.
  static bool killAtCall(const Words& words, int n) {
    const pid_t child = start(words, "/dev/null", true);
    int status = 0;
    waitpid(child, &status, 0);
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    bool counts = false;
    while (ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) == 0 &&
           waitpid(child, &status, 0) == child && WIFSTOPPED(status)) {
      __ptrace_syscall_info call{};
      ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof(call), &call);
      const bool isEntry = call.op == PTRACE_SYSCALL_INFO_ENTRY;
      counts = counts || (isEntry && call.entry.nr == SYS_flock);
      if (counts && isEntry && --n == 0) {
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
        return true;
      }
    }
    return false;
  }

  // What must hold after a kill, and after the same command has been run again.
  static void check(const Scenario& scenario) {
    const auto isNew = [](const char* area) {
      const std::string text = textOf(fileOf(area));
      EXPECT_TRUE(text == kOld || text == kNew) << area << ": " << text;
      return text == kNew;
    };
    static_cast<void>(isNew("qos") && isNew("misc"));
    if (!scenario.isOneArea) {
      EXPECT_EQ(0, run({"hearth", "batch", "--resume"})) << textOf("err");
      EXPECT_EQ(isNew("qos"), isNew("misc"));
    }
    EXPECT_EQ(0, run(scenario.words)) << textOf("err");
    EXPECT_TRUE(isNew("misc") && (scenario.isOneArea || isNew("qos")));
    for (const auto& entry : std::filesystem::recursive_directory_iterator("data")) {
      const std::string name = entry.path().filename();
      EXPECT_NE(0U, name.rfind(".hearth", 0)) << name;
      // A former file is no second name of the one that is there.
      EXPECT_TRUE(!entry.is_regular_file() || entry.hard_link_count() == 1) << name;
    }
  }
};

TEST_F(InterruptionTest, KilledAtEverySystemCall) {
  prepare();
  for (const Scenario& scenario : kScenarios) {
    int n = 0;
    bool isKilled = true;
    while (isKilled && !HasFailure()) {
      SCOPED_TRACE(scenario.name + (" " + std::to_string(++n)));
      reset();
      isKilled = killAtCall(scenario.words, n);
      check(scenario);
    }
    EXPECT_LT(20, n) << scenario.name;
  }
}

TEST_F(InterruptionTest, InterruptedAtRandom) {
  prepare();
  std::mt19937 random(1);
  for (int i = 0; i < 200 && !HasFailure(); ++i) {
    const Scenario& scenario = kScenarios[i % 3];
    SCOPED_TRACE(scenario.name + (" " + std::to_string(i)));
    reset();
    const pid_t child = start(scenario.words, "/dev/null", false);
    usleep(static_cast<useconds_t>(random() % 12000));
    kill(child, i % 2 == 0 ? SIGINT : SIGKILL);
    waitpid(child, nullptr, 0);
    check(scenario);
  }
}

}  // namespace
