#pragma once

#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace conduit {

/// The thread on which a module reads its device and delivers what comes.
///
/// A host stops a module from any of its threads, from within a delivery as well, and may
/// do so from two at once.
class DeviceThread {
 public:
  DeviceThread() = default;
  DeviceThread(const DeviceThread&) = delete;
  DeviceThread& operator=(const DeviceThread&) = delete;
  /// Stops as Stop does. REQUIRES: not called on the thread itself.
  ~DeviceThread();

  /// Starts the thread, which lives until `run` returns; stops an earlier one first.
  /// Throws a std::system_error when the system has no thread to give, and on the thread
  /// itself, which cannot wait for its own end. [host thread]
  /// @param run  returns soon when a stop is asked for, and lets no exception out;
  ///             destroyed at the end of the thread, with what it holds
  void Start(std::function<void(const std::stop_token& stop)> run);

  /// Asks for a stop and waits until the thread has ended; on the thread itself it only
  /// asks. [any thread]
  void Stop();

 private:
  std::mutex waiting;  ///< for the end of the thread: only one thread may
  std::stop_source source{std::nostopstate};
  std::thread thread;
};

}  // namespace conduit
