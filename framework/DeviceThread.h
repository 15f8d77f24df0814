#pragma once

#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace conduit {

/// The thread on which a module reads its device and delivers the data.
///
/// A host may stop a module on any thread, from within a delivery, and on two threads at
/// once.
class DeviceThread {
 public:
  DeviceThread() = default;
  DeviceThread(const DeviceThread&) = delete;
  DeviceThread& operator=(const DeviceThread&) = delete;
  /// Calls Stop. REQUIRES: not called on the thread itself.
  ~DeviceThread();

  /// Stops an earlier thread, then starts one that runs until `run` returns. Throws
  /// std::system_error when the system creates no thread, or when called on the thread
  /// itself, which cannot wait for its own end. [host thread]
  /// @param run  returns soon after a stop request; lets no exception escape; destroyed
  ///             at the end of the thread
  void Start(std::function<void(const std::stop_token& stop)> run);

  /// Requests a stop and waits until the thread has ended. On the thread itself it does
  /// not wait. [any thread]
  void Stop();

 private:
  std::mutex waiting;  ///< only one thread may join
  std::stop_source source{std::nostopstate};
  std::thread thread;
};

}  // namespace conduit
