#include "hosting/HostRecorder.h"

#include <algorithm>
#include <exception>
#include <utility>

#include <conduit/ItemName.h>
#include <conduit/MessageLevel.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

/// The highest level whose lines explain a refusal: failures, and requests that
/// name no known parameter.
constexpr std::int32_t LastExplainingLevel = MessageUnknownName;

/// What is held at most: a module may log without end.
constexpr std::size_t MostHeld = 100;

/// The contract rules null texts out, but this host also runs modules that are
/// still being written.
std::string CopyText(const char* text) { return text != nullptr ? text : ""; }

std::optional<std::string> CopyData(const void* data, std::int32_t length) {
  if (length <= 0) {
    return "";
  }
  if (data == nullptr) {
    return std::nullopt;
  }
  return std::string(static_cast<const char*>(data), static_cast<std::size_t>(length));
}

std::optional<std::string> CopyFeature(IStringMap* properties) {
  const char* const feature =
      properties != nullptr ? properties->Get(ItemProperty::Feature) : nullptr;
  return feature != nullptr ? std::optional<std::string>(feature) : std::nullopt;
}

/// Leaves out what another of the texts says as well: a module reports a reader
/// error and logs it, too.
std::vector<std::string> WithoutRepeats(const std::vector<std::string>& texts) {
  std::vector<std::string> distinct;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    bool repeated = false;
    for (std::size_t other = 0; other < texts.size() && !repeated; ++other) {
      const bool contained = texts[other].find(texts[i]) != std::string::npos;
      repeated = contained && (texts[other].size() > texts[i].size() || other < i);
    }
    if (!repeated) {
      distinct.push_back(texts[i]);
    }
  }
  return distinct;
}

}  // namespace

HostRecorder::HostRecorder(std::vector<RunListener*> listeners,
                           std::set<std::string> refusedSignals)
    : listeners(std::move(listeners)), refusedSignals(std::move(refusedSignals)) {}

void HostRecorder::Follow(const std::filesystem::path& log) {
  const std::lock_guard lock(mutex);
  readerLog.emplace(log);
}

void HostRecorder::Begin(const RunBegan& run) {
  const std::lock_guard lock(mutex);
  TellNext(&RunListener::OnRunBegan, run);
}

void HostRecorder::Warn(const Warned& warning) {
  const std::lock_guard lock(mutex);
  TellNext(&RunListener::OnWarning, warning);
}

void HostRecorder::Count(const PagesCounted& pages) {
  const std::lock_guard lock(mutex);
  TellNext(&RunListener::OnPagesCounted, pages);
}

void HostRecorder::PassTime() {
  const std::lock_guard lock(mutex);
  TellHeld();
  TellReaderLines();
  TellAll([](RunListener& listener) { listener.OnTimePassed(); });
}

void HostRecorder::End(const RunEnded& end) {
  const std::lock_guard lock(mutex);
  TellNext(&RunListener::OnRunEnded, end);
}

std::int32_t HostRecorder::Call(const std::string& name, const std::string& failure,
                                const std::function<std::int32_t()>& call) {
  {
    const std::lock_guard lock(mutex);
    TellHeld();
    callUnderWay = true;
  }
  // Without the lock: the module calls back before it returns.
  const std::int32_t result = call();

  const std::lock_guard lock(mutex);
  CallReturned returned = {name, failure, result, {}};
  if (result != ResultSuccess) {
    returned.reasons = MarkReasons();
  }
  callUnderWay = false;
  TellNext(&RunListener::OnCallReturned, returned);
  return result;
}

std::optional<std::string> HostRecorder::ListenerFailure() const {
  const std::lock_guard lock(mutex);
  return listenerFailure;
}

void HostRecorder::TellAll(const std::function<void(RunListener&)>& tell) {
  for (RunListener*& listener : listeners) {
    if (listener == nullptr) {
      continue;
    }
    // An exception that left here would unwind through the module and the
    // reader's threads.
    try {
      tell(*listener);
    } catch (const std::exception& problem) {
      listener = nullptr;
      if (!listenerFailure) {
        listenerFailure = problem.what();
      }
    }
  }
}

template <typename Happening>
void HostRecorder::Tell(void (RunListener::*operation)(const Happening&),
                        const Happening& happening) {
  TellAll([](RunListener& listener) { listener.OnAnything(); });
  TellAll([&](RunListener& listener) { (listener.*operation)(happening); });
}

template <typename Happening>
void HostRecorder::TellNext(void (RunListener::*operation)(const Happening&),
                            const Happening& happening) {
  TellHeld();
  TellReaderLines();
  Tell(operation, happening);
}

void HostRecorder::TellNext(void (RunListener::*operation)()) {
  TellHeld();
  TellReaderLines();
  TellAll([](RunListener& listener) { listener.OnAnything(); });
  TellAll([&](RunListener& listener) { (listener.*operation)(); });
}

void HostRecorder::TellReaderLines() {
  if (readerLog) {
    for (const ReaderLine& line : readerLog->NewLines()) {
      Tell(&RunListener::OnReaderLine, line);
    }
  }
}

void HostRecorder::Hold(Said said) {
  if (held.size() == MostHeld) {
    TellHeld();
  }
  // What the reader library has logged by now comes before, and what it logs from here
  // on comes behind.
  if (held.empty()) {
    TellReaderLines();
  }
  held.push_back(std::move(said));
}

void HostRecorder::TellHeld() {
  for (; !held.empty(); held.pop_front()) {
    const Said& said = held.front();
    if (const auto* line = std::get_if<LogLine>(&said)) {
      Tell(&RunListener::OnLogLine, *line);
    } else if (const auto* state = std::get_if<StateReported>(&said)) {
      Tell(&RunListener::OnState, *state);
    } else {
      Tell(&RunListener::OnError, std::get<ErrorReported>(said));
    }
  }
}

/// Only errors and lines of failures come from a call that fails and give its reasons.
std::vector<std::string> HostRecorder::MarkReasons() {
  std::vector<std::string> said;
  for (Said& one : held) {
    if (auto* const line = std::get_if<LogLine>(&one);
        line != nullptr && line->level <= LastExplainingLevel) {
      line->again = SaidAgain::AsFailure;
      said.push_back(line->message);
    }
    if (auto* const error = std::get_if<ErrorReported>(&one);
        error != nullptr && !error->text.empty()) {
      error->again = SaidAgain::AsFailure;
      said.push_back(error->text);
    }
  }
  return WithoutRepeats(said);
}

void HostRecorder::Log(std::int32_t level, const char* tag, const char* message) {
  LogLine line = {level, CopyText(tag), CopyText(message), SaidAgain::Nowhere};
  const std::lock_guard lock(mutex);
  Hold(std::move(line));
}

std::int32_t HostRecorder::SendData(const char* name, ItemType itemType, std::int32_t length,
                                    const void* data, IStringMap* properties, bool last) {
  ItemReceived item{CopyText(name),          itemType, length, CopyData(data, length),
                    CopyFeature(properties), last,     0};
  if (refusedSignals.contains(item.name)) {
    item.answer = StopRecord;
  }
  const std::lock_guard lock(mutex);
  TellNext(&RunListener::OnItem, item);
  return item.answer;
}

void HostRecorder::SendEvent(const char* name) {
  const EventReceived event = {CopyText(name)};
  const std::lock_guard lock(mutex);
  TellNext(&RunListener::OnEvent, event);
}

void HostRecorder::BeginData() {
  const std::lock_guard lock(mutex);
  TellNext(&RunListener::OnDataBegan);
}

void HostRecorder::EndData() {
  const std::lock_guard lock(mutex);
  TellNext(&RunListener::OnDataEnded);
}

std::int32_t HostRecorder::SetActiveScript(const char* name) {
  const ScriptActivated script = {CopyText(name)};
  const std::lock_guard lock(mutex);
  TellNext(&RunListener::OnScript, script);
  return ResultSuccess;
}

void HostRecorder::ReportState(const char* text) {
  StateReported state = {CopyText(text), false};
  const std::lock_guard lock(mutex);
  if (!callUnderWay) {
    TellNext(&RunListener::OnState, state);
    return;
  }
  state.repeated = std::ranges::any_of(held, [&](const Said& one) {
    const auto* const earlier = std::get_if<StateReported>(&one);
    return earlier != nullptr && earlier->text == state.text;
  });
  Hold(std::move(state));
}

void HostRecorder::ReportError(const char* text) {
  ErrorReported error = {CopyText(text), false, SaidAgain::Nowhere};
  const std::lock_guard lock(mutex);
  error.routine = error.text.empty() && !errorStands;
  errorStands = !error.text.empty();
  if (errorStands) {
    for (Said& one : held) {
      if (auto* const line = std::get_if<LogLine>(&one);
          line != nullptr && line->message.find(error.text) != std::string::npos) {
        line->again = SaidAgain::AsError;
      }
    }
  }
  if (callUnderWay) {
    Hold(std::move(error));
  } else {
    TellNext(&RunListener::OnError, error);
  }
}

}  // namespace conduit
