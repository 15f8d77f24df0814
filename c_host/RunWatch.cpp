#include "c_host/RunWatch.h"

#include <new>

#include "hosting/RunListener.h"

namespace conduit {

void RunWatch::Begin() {
  const std::lock_guard lock(mutex);
  outcome = Outcome::UnderWay;
  reason.clear();
}

bool RunWatch::Say(Outcome said, const char* why) noexcept {
  const std::lock_guard lock(mutex);
  if (outcome != Outcome::UnderWay) {
    return false;
  }
  outcome = said;
  try {
    reason = why;
  } catch (const std::bad_alloc&) {
    reason = OutOfMemory;
  }
  changed.notify_all();
  return true;
}

void RunWatch::End() {
  const std::lock_guard lock(mutex);
  outcome = Outcome::NotRunning;
  changed.notify_all();
}

RunWatch::Outcome RunWatch::WaitFor(std::optional<std::chrono::milliseconds> time) {
  std::unique_lock lock(mutex);
  const auto over = [this] { return outcome != Outcome::UnderWay; };
  if (time) {
    changed.wait_for(lock, *time, over);
  } else {
    changed.wait(lock, over);
  }
  return outcome;
}

std::string RunWatch::Reason() const {
  const std::lock_guard lock(mutex);
  return reason;
}

}  // namespace conduit
