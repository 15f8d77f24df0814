#include "virtual_reader/Playback.h"

#include <algorithm>
#include <exception>
#include <string>
#include <utility>

#include "virtual_reader/session/DocumentStep.h"
#include <conduit/ReaderBarcodeData.h>
#include <conduit/ReaderItem.h>

namespace conduit {
namespace {

/// A device takes a moment to answer, so that the host is told of the state
/// after the start before it is told of the connection.
constexpr Pause ConnectionTime = {std::chrono::milliseconds(50)};

/// What the reader is doing from the moment it announces an event.
constexpr struct {
  ReaderEventCode code;
  ReaderState activity;
} ActivityOfEvents[] = {
    {ReaderEventCode::StartOfDocumentData, ReaderState::Reading},
    {ReaderEventCode::EndOfDocumentData, ReaderState::Enabled},
    {ReaderEventCode::StartOfSwipeData, ReaderState::Reading},
    {ReaderEventCode::EndOfSwipeData, ReaderState::Enabled},
    {ReaderEventCode::DeviceConnected, ReaderState::Enabled},
    {ReaderEventCode::DeviceDisconnected, ReaderState::Disabled},
};

thread_local Playback* playbackOfThisThread = nullptr;

const char* NameOf(ReaderDataType type) {
  const ReaderItem* const item = FindReaderItem(type);
  return item == nullptr || item->kind == ReaderItemKind::Record ? "record" : item->name;
}

/// Takes no memory, like all that is logged here: what is played must not depend on it. A
/// number's digits fit into the string itself.
void LogItem(ReaderLog* log, ReaderDataType type, std::size_t size) {
  log->Write(LogItems, ReaderLogKind::Note,
             {"item ", NameOf(type), " (", std::to_string(static_cast<std::int32_t>(type)), "), ",
              std::to_string(size), " bytes"});
}

}  // namespace

Playback::Playback(Session session, Step opening, const ReaderCallbacks& callbacks,
                   std::atomic<ReaderState>* state, ReaderLog* log)
    : ownCode(HoldLibrary(reinterpret_cast<const void*>(&Playback::OfThisThread))),
      calledCode(HoldLibrary(reinterpret_cast<const void*>(callbacks.event))),
      readers(std::move(session.readers)),
      steps(
          std::move(session.documents),
          [pages = readers.get()](const Document& document) {
            return MakeStep(document, ReadImages(document, pages));
          },
          std::max(std::thread::hardware_concurrency(), 1U)),
      opening(std::move(opening)),
      callbacks(callbacks),
      state(state),
      log(log),
      thread([this] { Run(); }) {}

Playback::~Playback() {
  RequestStop();
  thread.join();
}

void Playback::RequestStop() {
  {
    const std::lock_guard lock(mutex);
    over = true;
    stopRequested.notify_all();
  }
  steps.RequestStop();
  readers->Stop();
}

void Playback::Abandon() {
  RequestStop();
  steps.Stop();
}

bool Playback::IsOver() {
  const std::lock_guard lock(mutex);
  return over;
}

Playback* Playback::OfThisThread() { return playbackOfThisThread; }

void Playback::Run() {
  playbackOfThisThread = this;
  Perform(ConnectionTime);
  Perform(SendEvent{ReaderEventCode::DeviceConnected, {}});
  PlayStep({std::move(opening)});
  while (std::optional<MadeStep> made = steps.Take()) {
    PlayStep(std::move(*made));
  }
  Perform(SendEvent{ReaderEventCode::DeviceDisconnected, ReaderState::Terminated});
  log->Write(LogLifecycle, "session ended");
  RequestStop();
}

void Playback::PlayStep(MadeStep made) {
  if (made.lost != nullptr) {
    // As a page that cannot be read: a host counts it as one.
    Perform(SendEvent{ReaderEventCode::DocOnWindow, {}});
    Perform(Loss{made.lost});
    Perform(SendEvent{ReaderEventCode::ReaderErrorResolved, {}});
    Perform(SendEvent{ReaderEventCode::DocRemoved, {}});
  }
  for (StepAction& action : made.step) {
    std::visit([this](auto& kind) { Perform(kind); }, action);
  }
  TellOfLog();
}

/// Between two steps, for it belongs to none of their documents.
void Playback::TellOfLog() {
  std::string trouble = log->TakeTrouble();
  if (trouble.empty()) {
    return;
  }
  const bool otherStands = errorStands;
  Perform(RaiseError{std::move(trouble)});
  if (!otherStands) {
    Perform(SendEvent{ReaderEventCode::ReaderErrorResolved, {}});
  }
}

/// An exception out of a callback is the host's failure; the reader goes on.
template <typename ActionType>
void Playback::Perform(ActionType&& action) {
  if (IsOver()) {
    return;
  }
  try {
    Play(action);
  } catch (const std::exception& error) {
    log->Write(LogFailures, ReaderLogKind::Note, {"exception out of a callback: ", error.what()});
  } catch (...) {
    log->Write(LogFailures, "unknown exception out of a callback");
  }
}

void Playback::Play(const SendEvent& event) {
  EnterState(event);
  log->Write(LogEvents, ReaderLogKind::Note,
             {"event ", ReaderEventNames[static_cast<std::size_t>(event.code)], ", state ",
              ReaderStateNames[static_cast<std::size_t>(state->load())]});
  if (callbacks.event != nullptr) {
    callbacks.event(callbacks.context, event.code);
  }
}

void Playback::Play(const RaiseError& error) { Play(Loss{error.text.c_str()}); }

void Playback::Play(const Loss& loss) {
  errorStands = true;
  PublishState();
  log->Write(LogEvents, ReaderLogKind::Note, {"error: ", loss.reason});
  if (callbacks.error != nullptr) {
    callbacks.error(nullptr, reinterpret_cast<const ReaderErrorInfo*>(loss.reason),
                    callbacks.context);
  }
}

void Playback::Play(const Pause& pause) {
  log->Write(LogPauses, ReaderLogKind::Note,
             {"pause of ", std::to_string(pause.time.count()), " ms"});
  std::unique_lock lock(mutex);
  stopRequested.wait_for(lock, pause.time, [this] { return over; });
}

void Playback::Play(SendItem& item) {
  LogItem(log, item.type, item.bytes.size());
  if (callbacks.data != nullptr) {
    callbacks.data(callbacks.context, item.type, static_cast<std::int32_t>(item.bytes.size()),
                   item.bytes.data());
  }
}

void Playback::Play(SendBarcode& barcode) {
  LogItem(log, barcode.type, barcode.data.size());
  ReaderBarcodeData record = {};
  record.index = barcode.index;
  record.count = barcode.count;
  record.format = barcode.format;
  record.data = barcode.data.data();
  record.length = static_cast<std::int32_t>(barcode.data.size());
  if (callbacks.data != nullptr) {
    callbacks.data(callbacks.context, barcode.type, sizeof record, &record);
  }
}

void Playback::Play(const WriteLine& line) { log->Write(LogLifecycle, line.kind, {line.text}); }

void Playback::EnterState(const SendEvent& event) {
  if (event.state) {
    errorStands = *event.state == ReaderState::Error;
    activity = errorStands ? activity : *event.state;
  }
  if (event.code == ReaderEventCode::ReaderErrorResolved) {
    errorStands = false;
  }
  for (const auto& row : ActivityOfEvents) {
    if (row.code == event.code && !event.state) {
      activity = row.activity;
    }
  }
  PublishState();
}

void Playback::PublishState() { state->store(errorStands ? ReaderState::Error : activity); }

}  // namespace conduit
