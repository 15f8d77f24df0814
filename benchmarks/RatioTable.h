#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "benchmarks/Workload.h"

namespace conduit {

struct Implementation {
  const char* name;
  const char* file;
};

/// Every list below has this order: floor, plain, module.
inline constexpr Implementation Implementations[] = {
    {"floor", FLOOR_FILE},
    {"plain", PLAIN_FILE},
    {"module", MODULE_FILE},
};
inline constexpr std::size_t ImplementationCount = 3;

/// The heap use of one implementation.
struct HeapUse {
  double calls;       ///< allocations per delivery
  double bytes;       ///< bytes per delivery
  std::int64_t kept;  ///< bytes not freed after many deliveries
};

/// For each workload, each implementation.
using HeapUses = std::vector<HeapUse>;

std::string TimingName(const Workload& workload, const Implementation& implementation, int threads);

/// Stores the times of every repetition.
class TimingCollector final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override;

  struct Timing {
    std::vector<double> wall;       ///< nanoseconds per delivery
    std::vector<double> processor;  ///< nanoseconds per delivery, of all threads
  };
  std::map<std::string, Timing> timings;
};

/// Returns whether the module exceeds the workload's target by at most a tenth.
bool MeetsItsTarget(const Workload& workload, const TimingCollector& collector);

/// Returns whether the module takes more than twice the workload's target: a fault of the
/// module, because load on the machine does not distort a ratio that much.
bool FailsItsTarget(const Workload& workload, const TimingCollector& collector);

/// Returns the tables that compare the implementations, with the machine's description.
std::string RatioTable(const std::vector<Workload>& workloads, const TimingCollector& collector,
                       const HeapUses& heapUses);

}  // namespace conduit
