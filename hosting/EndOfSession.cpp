#include "hosting/EndOfSession.h"

#include <cstddef>

#include "hosting/EventNames.h"
#include <conduit/ReaderState.h>

namespace conduit {

void EndOfSession::OnRunBegan(const RunBegan& /*run*/) {
  disconnected = false;
  const std::lock_guard lock(mutex);
  reached = false;
}

void EndOfSession::OnEvent(const EventReceived& event) {
  if (IsEvent(event.name, ReaderEventCode::DeviceDisconnected)) {
    disconnected = true;
  }
  if (IsEvent(event.name, ReaderEventCode::DeviceConnected)) {
    disconnected = false;
  }
}

void EndOfSession::OnState(const StateReported& state) {
  const char* const terminated =
      ReaderStateNames[static_cast<std::size_t>(ReaderState::Terminated)];
  if (!disconnected || state.text != terminated) {
    return;
  }
  const std::lock_guard lock(mutex);
  reached = true;
  changed.notify_all();
}

bool EndOfSession::WaitFor(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex);
  return changed.wait_for(lock, time, [this] { return reached; });
}

}  // namespace conduit
