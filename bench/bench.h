// Cases: one operation each, named "row/way". A row is a kind of work, a way one of those who can
// do it: "floor" is the work written by hand on the same json-c tree or with the same system calls,
// "hearth" the library, and the others are peers. scripts/bench divides by the floor.
//
// A case is given as a preparation that answers the operation, a callable with a result:
//
//   addCase("read7/hearth", [] {
//     return [document = parsed(gatewayText())] { return JsonData::getJObj(document.get(), kPath);
//     };
//   });
//
// The preparation is not measured. The operation is timed by Google Benchmark, or its instructions
// are counted by callgrind; it leaves what it works on as it found it.
#ifndef HEARTH_BENCH_BENCH_H
#define HEARTH_BENCH_BENCH_H

#include <benchmark/benchmark.h>
#include <json-c/json.h>

#include <functional>
#include <memory>
#include <string>

namespace bench {

struct Case {
  std::string name;
  std::function<void(benchmark::State&)> time;
  std::function<void(const std::string& name)> count;
};

void enter(Case added);

// Counts one operation: runs it often enough to even out what happens now and then, and has
// callgrind write the sum under the name, followed by the number of runs.
class InstructionCount {
 public:
  explicit InstructionCount(double secondsOfOne);
  int runs() const { return runs_; }
  void begin() const;
  void end(const std::string& name) const;

 private:
  int runs_;
};

double secondsNow();

template <typename Prepare>
void addCase(const std::string& name, Prepare prepare) {
  enter({name,
         [prepare](benchmark::State& state) {
           auto operation = prepare();
           for (auto step : state) {
             static_cast<void>(step);
             benchmark::DoNotOptimize(operation());
           }
         },
         [prepare](const std::string& counted) {
           auto operation = prepare();
           benchmark::DoNotOptimize(operation());
           const double start = secondsNow();
           benchmark::DoNotOptimize(operation());
           const InstructionCount count(secondsNow() - start);
           count.begin();
           for (int run = 0; run < count.runs(); ++run) {
             benchmark::DoNotOptimize(operation());
           }
           count.end(counted);
         }});
}

// Each theme enters its cases.
void addPathCases();
void addDocumentCases();
void addDatabaseCases();
void addKitCases();
void addLogCases();
void addValidationCases();
void addLoginCases();
void addGrowthCases();

// An owner of one json-c reference that operations can share and copy.
using Json = std::shared_ptr<json_object>;
Json parsed(const std::string& text);

// A file of the folder that this process works in, which is made empty and removed at its end.
std::string fileIn(const std::string& name);
void writeFile(const std::string& path, const std::string& text);

}  // namespace bench

#endif
