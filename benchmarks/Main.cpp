#include <benchmark/benchmark.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "benchmarks/RatioTable.h"
#include "benchmarks/Workload.h"
#include "tests/support/AllocationCount.h"
#include "tests/support/ScriptedReader.h"

namespace conduit {
namespace {

/// A host and a logger that ignore every call, so that the times are those of the
/// implementations.
class IdleHost final : public IInputModuleHost {
 public:
  std::int32_t SendData(const char* /*name*/, ItemType /*itemType*/, std::int32_t /*length*/,
                        const void* /*data*/, IStringMap* /*properties*/, bool /*last*/) override {
    return 0;
  }
  void SendEvent(const char* /*name*/) override {}
  void BeginData() override {}
  void EndData() override {}
  std::int32_t SetActiveScript(const char* /*name*/) override { return 0; }
  void ReportState(const char* /*text*/) override {}
  void ReportError(const char* /*text*/) override {}
};

class IdleLogger final : public IModuleLogger {
 public:
  void Log(std::int32_t /*level*/, const char* /*tag*/, const char* /*message*/) override {}
};

IdleHost idleHost;
IdleLogger idleLogger;

std::unique_ptr<Subject> Prepare(const Workload& workload, const char* file) {
  auto subject =
      std::make_unique<Subject>(file, workload.logged ? &idleLogger : nullptr, &idleHost);
  workload.prepare(*subject);
  return subject;
}

/// Throws with the first call in which the outputs of two implementations differ.
void CompareOutputs(const Workload& workload) {
  const std::vector<std::string> expected = OutputOf(workload, Implementations[0].file);
  for (const Implementation& implementation : Implementations) {
    const std::vector<std::string> output = OutputOf(workload, implementation.file);
    for (std::size_t index = 0; index < std::max(expected.size(), output.size()); ++index) {
      const std::string wanted = index < expected.size() ? expected[index] : "(nothing)";
      const std::string got = index < output.size() ? output[index] : "(nothing)";
      if (wanted != got) {
        std::ostringstream difference;
        difference << workload.name << ": " << Implementations[0].name << " gives\n  " << wanted
                   << "\nbut " << implementation.name << " gives\n  " << got;
        throw std::runtime_error(difference.str());
      }
    }
  }
}

HeapUse MeasureHeap(const Workload& workload, const char* file, int deliveries) {
  const auto subject = Prepare(workload, file);
  const auto deliver = [&](int times) {
    for (int number = 0; number < times; ++number) {
      workload.deliver(*subject);
    }
    return Allocations();
  };
  deliver(10);
  CountAllocations(true);
  const AllocationCount start = Allocations();
  const AllocationCount one = deliver(deliveries);
  const AllocationCount many = deliver(10 * deliveries);
  CountAllocations(false);
  return {static_cast<double>(one.calls - start.calls) / deliveries,
          static_cast<double>(one.bytes - start.bytes) / deliveries, many.live - one.live};
}

/// @param wanted  returns whether to measure a workload
void RegisterTimings(const std::vector<Workload>& workloads,
                     const std::vector<std::unique_ptr<Subject>>& subjects, bool quick,
                     const std::function<bool(const Workload&)>& wanted) {
  const double seconds = quick ? 0.002 : 0.004;
  const int repetitions = quick ? 40 : 200;
  for (std::size_t index = 0; index < subjects.size(); ++index) {
    const Workload& workload = workloads[index / ImplementationCount];
    if (!wanted(workload)) {
      continue;
    }
    const Implementation& implementation = Implementations[index % ImplementationCount];
    Subject* const subject = subjects[index].get();
    const auto run = [&workload, subject](benchmark::State& state) {
      for (auto _ : state) {
        workload.deliver(*subject);
      }
    };
    const auto add = [&](int threads) {
      benchmark::RegisterBenchmark(TimingName(workload, implementation, threads).c_str(), run)
          ->Threads(threads)
          ->UseRealTime()
          ->MinTime(seconds)
          ->Repetitions(repetitions);
    };
    add(1);
    if (workload.mostOfFloor > 0) {  // documents, which several readers may deliver
      add(2);
    }
  }
}

std::vector<Workload> WorkloadsNamed(const std::vector<std::string>& names) {
  std::vector<Workload> named;
  for (const Workload& workload : Workloads()) {
    if (names.empty() || std::find(names.begin(), names.end(), workload.name) != names.end()) {
      named.push_back(workload);
    }
  }
  return named;
}

/// @returns whether no workload took more than twice its target.
bool Run(bool quick, const std::vector<std::string>& names, const std::string& output) {
  const std::vector<Workload> workloads = WorkloadsNamed(names);
  HeapUses heapUses;
  std::vector<std::unique_ptr<Subject>> subjects;
  for (const Workload& workload : workloads) {
    CompareOutputs(workload);
    for (const Implementation& implementation : Implementations) {
      heapUses.push_back(MeasureHeap(workload, implementation.file, quick ? 100 : 1000));
      subjects.push_back(Prepare(workload, implementation.file));
    }
  }

  // In random order, so that no implementation alone gets the quiet moments of the machine.
  char program[] = "bench";
  char interleaving[] = "--benchmark_enable_random_interleaving=true";
  char* arguments[] = {program, interleaving, nullptr};
  int argumentCount = 2;
  benchmark::Initialize(&argumentCount, arguments);
  TimingCollector timings;
  const auto missed = [&timings](const Workload& workload) {
    return !MeetsItsTarget(workload, timings);
  };
  RegisterTimings(workloads, subjects, quick, [](const Workload&) { return true; });
  benchmark::RunSpecifiedBenchmarks(&timings);
  // Repeats missed workloads, because a busy machine may cause a miss; adds the repetitions.
  for (int again = 0; again < 4; ++again) {
    benchmark::ClearRegisteredBenchmarks();
    RegisterTimings(workloads, subjects, quick, missed);
    if (std::any_of(workloads.begin(), workloads.end(), missed)) {
      benchmark::RunSpecifiedBenchmarks(&timings);
    }
  }

  const std::string table = RatioTable(workloads, timings, heapUses);
  std::cout << table;
  if (!output.empty() && !(std::ofstream(output) << table)) {
    throw std::runtime_error("cannot write " + output);
  }
  bool failed = false;
  for (const Workload& workload : workloads) {
    if (missed(workload)) {
      const bool fails = FailsItsTarget(workload, timings);
      std::cerr << "bench: " << workload.name << " misses its target "
                << (fails ? "by more than twice" : "by more than a tenth, which is no failure")
                << "\n";
      failed = failed || fails;
    }
  }
  return !failed;
}

int Start(int count, char** arguments) {
  CLI::App app(
      "Measures the module against the least that its work takes and against a plain\n"
      "implementation of it. Exits with 1 when the module takes more than twice a target.\n\n"
      "Examples:\n  conduit_bench\n  conduit_bench --quick --only 'codeline record'\n"
      "  conduit_bench --output table.md");
  bool quick = false;
  std::vector<std::string> only;
  std::string output;
  std::vector<std::string> known;
  for (const Workload& workload : Workloads()) {
    known.emplace_back(workload.name);
  }
  app.add_flag("--quick", quick, "Short measurements, for trying out: the ratios are rough");
  app.add_option("--only", only, "Measure only this workload; repeatable")
      ->allow_extra_args(false)
      ->check(CLI::IsMember(known));
  app.add_option("--output", output, "Also write the tables to this file");
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  return Run(quick, only, output) ? 0 : 1;
}

}  // namespace
}  // namespace conduit

int main(int count, char** arguments) {
  try {
    return conduit::Start(count, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench: %s\n", error.what());
    return 1;
  }
}
