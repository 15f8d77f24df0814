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

/// The order is that of every list below: floor, plain, module.
inline constexpr Implementation Implementations[] = {
    {"floor", FLOOR_FILE},
    {"plain", PLAIN_FILE},
    {"module", MODULE_FILE},
};
inline constexpr std::size_t ImplementationCount = 3;

/// What one implementation takes from the heap.
struct HeapUse {
  double calls;       ///< a delivery
  double bytes;       ///< a delivery
  std::int64_t kept;  ///< bytes, over many deliveries
};

/// Of each workload, each implementation.
using HeapUses = std::vector<HeapUse>;

std::string TimingName(const Workload& workload, const Implementation& implementation, int threads);

/// Keeps the times of every repetition.
class TimingCollector final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override;

  struct Timing {
    std::vector<double> wall;       ///< nanoseconds a delivery
    std::vector<double> processor;  ///< nanoseconds a delivery, of all threads
  };
  std::map<std::string, Timing> timings;
};

/// Whether the module is at most a tenth above what the workload demands of it.
bool MeetsItsTarget(const Workload& workload, const TimingCollector& collector);

/// Whether the module takes more than twice what the workload demands of it: a fault of the
/// module, as no busy machine makes that of a ratio.
bool FailsItsTarget(const Workload& workload, const TimingCollector& collector);

/// The tables that say how the implementations compare, and on what machine.
std::string RatioTable(const std::vector<Workload>& workloads, const TimingCollector& collector,
                       const HeapUses& heapUses);

}  // namespace conduit
