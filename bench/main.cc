// The benchmark program. Without HEARTH_BENCH_COUNT it is a Google Benchmark program with that
// library's options; with it, a regular expression, it counts the instructions of the cases that
// match, for callgrind.
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <vector>

#include "bench/bench.h"
#include "hearth/logger.h"

namespace bench {
namespace {

std::vector<Case>& cases() {
  static std::vector<Case> all;
  return all;
}

// The folder that the process works in.
class Workshop {
 public:
  Workshop() {
    const char* const parent = getenv("TMPDIR");
    path_ = std::string(parent != nullptr ? parent : "/tmp") + "/hearth-bench-XXXXXX";
    if (mkdtemp(path_.data()) == nullptr || chdir(path_.c_str()) != 0) {
      perror(path_.c_str());
      exit(EXIT_FAILURE);
    }
  }
  ~Workshop() { nftw(path_.c_str(), &removeOne, 8, FTW_DEPTH | FTW_PHYS); }
  Workshop(const Workshop&) = delete;
  Workshop& operator=(const Workshop&) = delete;

  const std::string& path() const { return path_; }

 private:
  static int removeOne(const char* path, const struct stat*, int, struct FTW*) {
    return remove(path);
  }

  std::string path_;
};

const Workshop& workshop() {
  static const Workshop only;
  return only;
}

void countMatching(const std::regex& wanted) {
  for (const Case& each : cases()) {
    if (std::regex_search(each.name, wanted)) {
      each.count(each.name);
    }
  }
}

void timeAll(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  for (const Case& each : cases()) {
    benchmark::RegisterBenchmark(each.name.c_str(), each.time)->UseRealTime();
  }
  benchmark::RunSpecifiedBenchmarks();
}

}  // namespace

void enter(Case added) {
  cases().push_back(std::move(added));
}

InstructionCount::InstructionCount(double secondsOfOne)
    : runs_(static_cast<int>(std::clamp(0.05 / secondsOfOne, 3.0, 300.0))) {}

void InstructionCount::begin() const {
  CALLGRIND_TOGGLE_COLLECT;
}

void InstructionCount::end(const std::string& name) const {
  CALLGRIND_TOGGLE_COLLECT;
  const std::string label = name + " " + std::to_string(runs_);
  CALLGRIND_DUMP_STATS_AT(label.c_str());
}

double secondsNow() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

Json parsed(const std::string& text) {
  return Json(json_tokener_parse(text.c_str()), json_object_put);
}

std::string fileIn(const std::string& name) {
  return workshop().path() + "/" + name;
}

void writeFile(const std::string& path, const std::string& text) {
  FILE* const file = fopen(path.c_str(), "w");
  if (file == nullptr || fwrite(text.data(), 1, text.size(), file) != text.size() ||
      fclose(file) != 0) {
    perror(path.c_str());
    exit(EXIT_FAILURE);
  }
}

}  // namespace bench

int main(int argc, char** argv) {
  bench::fileIn("");
  Logger::setGroup(LOG_GROUP_UTIL, false);
  bench::addPathCases();
  bench::addDocumentCases();
  bench::addDatabaseCases();
  bench::addKitCases();
  bench::addLogCases();
  bench::addValidationCases();
  bench::addLoginCases();
  bench::addGrowthCases();
  const char* const counted = getenv("HEARTH_BENCH_COUNT");
  if (counted != nullptr) {
    bench::countMatching(std::regex(counted));
  } else {
    bench::timeAll(argc, argv);
  }
  return 0;
}
