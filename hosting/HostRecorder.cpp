#include "hosting/HostRecorder.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include "hosting/EventNames.h"
#include "platform/FilePath.h"
#include <conduit/ItemName.h>
#include <conduit/MessageLevel.h>
#include <conduit/ReaderLogLine.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

/// The highest level whose lines explain a refusal: failures, and requests that
/// name no known parameter.
constexpr std::int32_t LastExplainingLevel = MessageUnknownName;

/// More than the end of a run and what is told of it take.
constexpr std::size_t ReserveSize = 256UL << 10;

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
    : listeners(std::move(listeners)),
      refusedSignals(std::move(refusedSignals)),
      documents(
          [this](const Document& document) { Tell(&RunListener::OnDocumentBegan, document); },
          [this](const Document& document) { Tell(&RunListener::OnDocumentEnded, document); }),
      reserve(new char[ReserveSize]) {}

void HostRecorder::Follow(const std::filesystem::path& log) {
  const std::lock_guard lock(mutex);
  readerLog.emplace(log);
}

std::filesystem::path HostRecorder::FollowOwnLog() {
  const std::lock_guard lock(mutex);
  return readerLog.emplace().File();
}

void HostRecorder::Begin(const RunBegan& run) {
  Locked([&] { TellNext(&RunListener::OnRunBegan, run); });
}

void HostRecorder::Warn(const Warned& warning) {
  Locked([&] { TellNext(&RunListener::OnWarning, warning); });
}

bool HostRecorder::TellMissing() {
  bool missing = false;
  Locked([&] {
    TellWaiting();
    const bool pagesUnread = documents.Pages().unread > 0;
    missing = missesReaderLines || pagesUnread;
    if (missesReaderLines) {
      Tell(&RunListener::OnWarning,
           Warned{"lines are missing from the reader's log, and with them what they would have "
                  "told: names of documents, warnings"});
    }
    if (pagesUnread) {
      Tell(&RunListener::OnPagesCounted, documents.Pages());
    }
  });
  return missing;
}

void HostRecorder::PassTime() {
  WhileModuleSpeaks([&] {
    TellWaiting();
    TellAll([](RunListener& listener) { listener.OnTimePassed(); });
  });
}

void HostRecorder::End(const RunEnded& end) {
  // The end is told whether or not there is memory for what waits.
  Locked([&] { TellWaiting(); });
  Locked([&] { documents.End(); });
  Locked([&] { Tell(&RunListener::OnRunEnded, end); });
}

std::int32_t HostRecorder::Call(const std::string& name, const std::string& failure,
                                const std::function<std::int32_t()>& call) {
  Locked([&] {
    callUnderWay = true;
    TellHeld();
  });
  // Without the lock: the module calls back before it returns.
  const std::int32_t result = call();

  Locked([&] {
    callUnderWay = false;
    CallReturned returned = {name, failure, result, {}};
    if (result != ResultSuccess) {
      returned.reasons = MarkReasons();
    }
    TellNext(&RunListener::OnCallReturned, returned);
  });
  return result;
}

std::vector<std::string> HostRecorder::Failures() const {
  const std::lock_guard lock(mutex);
  return failed && failures.empty() ? std::vector<std::string>{OutOfMemory} : failures;
}

void HostRecorder::Recover() noexcept {
  const std::lock_guard lock(mutex);
  failed = false;
  outOfMemory = false;
  failures.clear();
  reserve.reset(new (std::nothrow) char[ReserveSize]);
}

bool HostRecorder::IsTold(const RunListener& listener) const {
  const std::lock_guard lock(mutex);
  return std::ranges::find(listeners, &listener) != listeners.end();
}

/// An exception that left here would unwind through the module and the reader's threads.
template <typename Work>
void HostRecorder::Locked(const Work& work) noexcept {
  const std::lock_guard lock(mutex);
  try {
    work();
  } catch (const std::exception& problem) {
    Fail(problem);
  }
}

/// What is told behind a loss would look as if nothing had come between.
template <typename Work>
void HostRecorder::WhileModuleSpeaks(const Work& work) noexcept {
  Locked([&] {
    if (!outOfMemory) {
      work();
    }
  });
}

void HostRecorder::Fail(const std::exception& problem) noexcept {
  const bool noMemory = dynamic_cast<const std::bad_alloc*>(&problem) != nullptr;
  if (noMemory) {
    outOfMemory = true;
    reserve.reset();
  }
  failed = true;
  try {
    std::string text = noMemory ? OutOfMemory : problem.what();
    if (std::ranges::find(failures, text) == failures.end()) {
      failures.push_back(std::move(text));
    }
  } catch (const std::bad_alloc&) {
    outOfMemory = true;
  }
}

template <typename Operation>
void HostRecorder::TellAll(const Operation& tell) {
  for (RunListener*& listener : listeners) {
    if (listener == nullptr) {
      continue;
    }
    try {
      tell(*listener);
    } catch (const std::exception& problem) {
      listener = nullptr;
      Fail(problem);
    } catch (...) {
      listener = nullptr;
      Fail(std::runtime_error("a listener threw an exception that says nothing"));
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
  TellWaiting();
  Tell(operation, happening);
}

void HostRecorder::TellError(ErrorReported& error) {
  if (!error.text.empty()) {
    documents.ErrorCame();
  }
  error.belongsTo = documents.Current();
  Tell(&RunListener::OnError, error);
}

void HostRecorder::TellWaiting() {
  TellHeld();
  TellReaderLines();
}

void HostRecorder::TellReaderLines() {
  if (readerLog) {
    for (ReaderLine& line : readerLog->NewLines()) {
      if (!line.document.empty()) {
        documents.Named(line.document);
      }
      line.belongsTo = documents.Current();
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
    Said& said = held.front();
    if (const auto* line = std::get_if<LogLine>(&said)) {
      Tell(&RunListener::OnLogLine, *line);
    } else if (const auto* state = std::get_if<StateReported>(&said)) {
      Tell(&RunListener::OnState, *state);
    } else {
      TellError(std::get<ErrorReported>(said));
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
  WhileModuleSpeaks([&] {
    Hold(LogLine{level, CopyText(tag), CopyText(message), SaidAgain::Nowhere});
  });
}

std::int32_t HostRecorder::SendData(const char* name, ItemType itemType, std::int32_t length,
                                    const void* data, IStringMap* properties, bool last) {
  std::int32_t answer = 0;
  WhileModuleSpeaks([&] {
    TellWaiting();
    documents.ItemCame();
    ItemReceived item{CopyText(name),          itemType, length, CopyData(data, length),
                      CopyFeature(properties), last,     0,      *documents.Current()};
    if (refusedSignals.contains(item.name)) {
      item.answer = StopRecord;
    }
    answer = item.answer;
    Tell(&RunListener::OnItem, item);
  });
  return answer;
}

void HostRecorder::SendEvent(const char* name) {
  WhileModuleSpeaks([&] {
    const EventReceived event{CopyText(name)};
    TellWaiting();
    if (IsEvent(event.name, ReaderEventCode::DocOnWindow)) {
      documents.LaidDown();
    }
    Tell(&RunListener::OnEvent, event);
    if (IsEvent(event.name, ReaderEventCode::DocRemoved)) {
      documents.End();
    }
  });
}

void HostRecorder::BeginData() {
  WhileModuleSpeaks([&] {
    TellWaiting();
    documents.DataBegan();
    Tell(&RunListener::OnDataBegan, *documents.Current());
  });
}

void HostRecorder::EndData() {
  WhileModuleSpeaks([&] {
    TellWaiting();
    documents.DataEnded();
    Tell(&RunListener::OnDataEnded, documents.Current().value_or(Document{}));
  });
}

std::int32_t HostRecorder::SetActiveScript(const char* name) {
  WhileModuleSpeaks([&] { TellNext(&RunListener::OnScript, ScriptActivated{CopyText(name)}); });
  return ResultSuccess;
}

void HostRecorder::ReportState(const char* text) {
  WhileModuleSpeaks([&] {
    StateReported state = {CopyText(text), false};
    if (!callUnderWay) {
      TellNext(&RunListener::OnState, state);
      return;
    }
    state.repeated = std::ranges::any_of(held, [&](const Said& one) {
      const auto* const earlier = std::get_if<StateReported>(&one);
      return earlier != nullptr && earlier->text == state.text;
    });
    Hold(std::move(state));
  });
}

void HostRecorder::ReportError(const char* text) {
  WhileModuleSpeaks([&] {
    ErrorReported error = {CopyText(text), false, SaidAgain::Nowhere};
    error.routine = error.text.empty() && !errorStands;
    missesReaderLines =
        missesReaderLines ||
        (readerLog && IsReaderLogError(error.text, Utf8FromPath(readerLog->File())));
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
      TellWaiting();
      TellError(error);
    }
  });
}

}  // namespace conduit
