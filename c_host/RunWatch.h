#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

namespace conduit {

/// What becomes of a run, for those who wait for it. [any thread]
class RunWatch {
 public:
  enum class Outcome { UnderWay, ReaderEnded, Interrupted, CallbackFailed, NotRunning };

  void Begin();
  /// The first that is said of a run stands, until it is over.
  /// @returns whether it was the first.
  bool Say(Outcome said, const char* why = "") noexcept;
  void End();

  /// Waits until the run is no longer under way, at most so long; none: as long as it takes.
  Outcome WaitFor(std::optional<std::chrono::milliseconds> time);

  /// Why a callback failed in this run.
  std::string Reason() const;

 private:
  mutable std::mutex mutex;
  std::condition_variable changed;
  Outcome outcome = Outcome::NotRunning;
  std::string reason;
};

}  // namespace conduit
