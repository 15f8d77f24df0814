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
/// answers on its standard output. A crash of it does not affect this process, which can
/// kill it at any time. It inherits no open file, receives no signal of the terminal, and
/// its standard error is discarded.
///
/// [one thread at a time, except Kill]
class WorkerProcess {
 public:
  /// Starts the program. Throws std::runtime_error with the program and the system's reason
  /// when it does not start. REQUIRES: an absolute path.
  explicit WorkerProcess(const std::filesystem::path& program);
  /// Kills the process and waits for its end.
  ~WorkerProcess();
  WorkerProcess(const WorkerProcess&) = delete;
  WorkerProcess& operator=(const WorkerProcess&) = delete;

  /// Waits at most `time` for room and writes the bytes that fit. Returns their number, 0
  /// when there was no room in time, or std::nullopt when the process has ended. On Windows,
  /// blocks until the process reads.
  std::optional<std::size_t> Write(std::string_view bytes, std::chrono::milliseconds time);

  /// Waits at most `time` for bytes and reads those available, `most` at most. Returns their
  /// number, 0 when none arrived in time, or std::nullopt when the process has ended.
  std::optional<std::size_t> Read(char* bytes, std::size_t most, std::chrono::milliseconds time);

  /// Kills the process. A blocked Write or Read returns. [any thread]
  void Kill();

  /// Returns the processor time that the process has used.
  std::chrono::milliseconds ProcessorTime() const;

  /// Waits for the end of the process and returns its cause: "exit status 3", "SIGABRT".
  std::string WaitForEnd();

 private:
  struct State;
  const std::unique_ptr<State> state;
};

/// Makes this process a worker: its standard streams carry bytes, and it ends together with
/// the process that started it, even in the middle of work.
void BecomeWorker();

}  // namespace conduit
