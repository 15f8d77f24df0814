#include "framework/DeviceThread.h"

#include <system_error>
#include <utility>

namespace conduit {
namespace {

/// The DeviceThread that the calling thread belongs to, if any: a thread that waited for
/// itself would deadlock.
thread_local const DeviceThread* current = nullptr;

}  // namespace

DeviceThread::~DeviceThread() { Stop(); }

void DeviceThread::Start(std::function<void(const std::stop_token& stop)> run) {
  if (current == this) {
    throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
  }
  Stop();
  const std::lock_guard lock(waiting);
  source = std::stop_source();
  thread = std::thread([this, run = std::move(run), stop = source.get_token()] {
    current = this;
    run(stop);
  });
}

void DeviceThread::Stop() {
  if (current == this) {
    source.request_stop();
    return;
  }
  const std::lock_guard lock(waiting);
  source.request_stop();
  if (thread.joinable()) {
    thread.join();
  }
}

}  // namespace conduit
