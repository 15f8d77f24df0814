#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "hosting/RunListener.h"

namespace conduit {

/// Notices that the reader has nothing more to give: its device is disconnected
/// and it then calls itself terminated. The state alone does not count, because
/// a reader may pass through it while it starts.
class EndOfSession final : public RunListener {
 public:
  /// Forgets the end of an earlier run.
  void OnRunBegan(const RunBegan& run) override;
  void OnEvent(const EventReceived& event) override;
  void OnState(const StateReported& state) override;

  /// Waits for the end, at most so long. [any thread]
  /// @returns whether it has come.
  bool WaitFor(std::chrono::milliseconds time);

 private:
  bool disconnected = false;

  std::mutex mutex;
  std::condition_variable changed;
  bool reached = false;
};

}  // namespace conduit
