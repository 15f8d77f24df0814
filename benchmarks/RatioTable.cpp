#include "benchmarks/RatioTable.h"

#include <algorithm>
#include <ctime>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <thread>

namespace conduit {
namespace {

/// Returns the 10th percentile: other load on the machine only adds to a time.
double Quiet(std::vector<double> values) {
  const auto tenth = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 10);
  std::nth_element(values.begin(), tenth, values.end());
  return *tenth;
}

std::string Fixed(double value, int digits) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(digits) << value;
  return text.str();
}

std::string Duration(double nanoseconds) {
  return nanoseconds < 10000 ? Fixed(nanoseconds, 0) + " ns" : Fixed(nanoseconds / 1000, 1) + " µs";
}

std::string ProcessorModel() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("model name", 0) == 0) {
      return line.substr(line.find(": ") + 2);
    }
  }
  return "unknown processor";
}

std::string Machine() {
  const std::time_t now = std::time(nullptr);
  char date[16];
  std::strftime(date, sizeof date, "%Y-%m-%d", std::gmtime(&now));
  return "Measured on " + std::string(date) + ": " +
         std::to_string(std::thread::hardware_concurrency()) + " cores of " + ProcessorModel() +
         ", " COMPILER ", " BUILD_TYPE " build.\n";
}

struct Ratios {
  double nanoseconds[ImplementationCount];
  double ofFloor;
  double ofPlain;
};

Ratios RatiosOf(const Workload& workload, const TimingCollector& collector) {
  Ratios ratios = {};
  for (std::size_t column = 0; column < ImplementationCount; ++column) {
    ratios.nanoseconds[column] =
        Quiet(collector.timings.at(TimingName(workload, Implementations[column], 1)).processor);
  }
  ratios.ofFloor = ratios.nanoseconds[2] / ratios.nanoseconds[0];
  ratios.ofPlain = ratios.nanoseconds[2] / ratios.nanoseconds[1];
  return ratios;
}

/// A workload misses its target when it exceeds it by more than a tenth.
constexpr double Tolerance = 1.1;

/// Returns the module's time divided by its target: at most 1 meets it.
double Excess(const Workload& workload, const Ratios& ratios) {
  return workload.mostOfFloor > 0 ? std::max(ratios.ofFloor / workload.mostOfFloor, ratios.ofPlain)
                                  : ratios.ofPlain;
}

std::string Verdict(const Workload& workload, const Ratios& ratios) {
  const std::string demanded = workload.mostOfFloor > 0
                                   ? Fixed(workload.mostOfFloor, 2) + " of the floor"
                                   : std::string("plain");
  const double excess = Excess(workload, ratios);
  return (excess <= 1 ? "met: " : excess <= Tolerance ? "within a tenth: " : "missed: ") + demanded;
}

}  // namespace

std::string TimingName(const Workload& workload, const Implementation& implementation,
                       int threads) {
  return std::string(workload.name) + "|" + implementation.name + "|" + std::to_string(threads);
}

void TimingCollector::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type == Run::RT_Iteration) {
      Timing& timing = timings[run.run_name.function_name];
      const auto deliveries = static_cast<double>(run.iterations);
      timing.wall.push_back(run.real_accumulated_time / deliveries * 1e9);
      timing.processor.push_back(run.cpu_accumulated_time / deliveries * 1e9);
    }
  }
}

bool MeetsItsTarget(const Workload& workload, const TimingCollector& collector) {
  return Excess(workload, RatiosOf(workload, collector)) <= Tolerance;
}

bool FailsItsTarget(const Workload& workload, const TimingCollector& collector) {
  return Excess(workload, RatiosOf(workload, collector)) > 2;
}

std::string RatioTable(const std::vector<Workload>& workloads, const TimingCollector& collector,
                       const HeapUses& heapUses) {
  std::ostringstream time;
  std::ostringstream heap;
  std::ostringstream scaling;
  time << "| workload | floor | plain | module | module ÷ floor | module ÷ plain | target |\n"
          "|---|---:|---:|---:|---:|---:|---|\n";
  heap << "| workload | plain: calls | bytes | module: calls | bytes | kept | floor: calls |\n"
          "|---|---:|---:|---:|---:|---:|---:|\n";
  scaling << "| workload | implementation | deliveries, two threads ÷ one | processor time each, "
             "two threads ÷ one |\n|---|---|---:|---:|\n";
  for (std::size_t row = 0; row < workloads.size(); ++row) {
    const Workload& workload = workloads[row];
    const Ratios ratios = RatiosOf(workload, collector);
    for (const Implementation& implementation : Implementations) {
      const auto& alone = collector.timings.at(TimingName(workload, implementation, 1));
      const auto both = collector.timings.find(TimingName(workload, implementation, 2));
      if (both != collector.timings.end()) {
        scaling << "| " << workload.name << " | " << implementation.name << " | "
                << Fixed(Quiet(alone.wall) / Quiet(both->second.wall), 2) << " | "
                << Fixed(Quiet(both->second.processor) / Quiet(alone.processor), 2) << " |\n";
      }
    }
    time << "| " << workload.name << " | " << Duration(ratios.nanoseconds[0]) << " | "
         << Duration(ratios.nanoseconds[1]) << " | " << Duration(ratios.nanoseconds[2]) << " | "
         << Fixed(ratios.ofFloor, 2) << " | " << Fixed(ratios.ofPlain, 2) << " | "
         << Verdict(workload, ratios) << " |\n";
    const HeapUse* const use = &heapUses[row * ImplementationCount];
    heap << "| " << workload.name << " | " << Fixed(use[1].calls, 0) << " | "
         << Fixed(use[1].bytes, 0) << " | " << Fixed(use[2].calls, 0) << " | "
         << Fixed(use[2].bytes, 0) << " | " << use[2].kept << " | " << Fixed(use[0].calls, 0)
         << " |\n";
  }
  return Machine() + "\n" + time.str() + "\n" + heap.str() + "\n" + scaling.str();
}

}  // namespace conduit
