#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace conduit {

/// A program that works for this process: it receives bytes on its standard input and
/// answers on its standard output. Whatever happens to it is no harm to this process, and
/// it can be ended at any time. It inherits no file of this process, no signal of a
/// terminal reaches it, and what it writes to its standard error is dropped.
///
/// [one thread at a time, but for Kill]
class WorkerProcess {
 public:
  /// Throws std::runtime_error with the program and the system's reason when it cannot be
  /// started. REQUIRES: an absolute path.
  explicit WorkerProcess(const std::filesystem::path& program);
  /// Kills the process, and waits until it has ended.
  ~WorkerProcess();
  WorkerProcess(const WorkerProcess&) = delete;
  WorkerProcess& operator=(const WorkerProcess&) = delete;

  /// Waits until the process takes bytes, for `time` at most, and writes those for which
  /// there is room. Returns their number, 0 when it took none in time, or nothing when it
  /// has ended. On Windows this waits for as long as the process takes nothing.
  std::optional<std::size_t> Write(std::string_view bytes, std::chrono::milliseconds time);

  /// Waits for bytes, for `time` at most, and reads those that are there. Returns their
  /// number, 0 when none came in time, or nothing when the process has ended.
  std::optional<std::size_t> Read(char* bytes, std::size_t most, std::chrono::milliseconds time);

  /// Ends the process at once. A Write or Read that is under way returns. [any thread]
  void Kill();

  /// The time that processors have spent on the process.
  std::chrono::milliseconds ProcessorTime() const;

  /// Waits until the process has ended, and returns how: "exit status 3", "SIGABRT".
  std::string WaitForEnd();

 private:
  struct State;
  const std::unique_ptr<State> state;
};

/// Makes this process such a worker: its standard streams carry bytes, and it ends with the
/// process that has started it, whatever it is doing then.
void BecomeWorker();

}  // namespace conduit
