#include "hosting/EndOfSession.h"

#include <cstddef>

#include "interfaces/ReaderEventCode.h"
#include "interfaces/ReaderState.h"

namespace conduit {

namespace {

const char* NameOf(ReaderEventCode code) {
  return ReaderEventNames[static_cast<std::size_t>(code)];
}

}  // namespace

void EndOfSession::Receive(const Happening& happening) {
  if (const auto* event = std::get_if<EventReceived>(&happening)) {
    if (event->name == NameOf(ReaderEventCode::DeviceDisconnected)) {
      disconnected = true;
    }
    if (event->name == NameOf(ReaderEventCode::DeviceConnected)) {
      disconnected = false;
    }
  }
  const auto* state = std::get_if<StateReported>(&happening);
  const char* terminated = ReaderStateNames[static_cast<std::size_t>(ReaderState::Terminated)];
  if (!state || !disconnected || state->text != terminated) {
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
