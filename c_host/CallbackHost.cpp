#include "c_host/CallbackHost.h"

#include <exception>
#include <new>
#include <utility>
#include <vector>

#include "c_host/HostError.h"
#include <conduit/ItemName.h>
#include <conduit/MessageLevel.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

struct ItemUnderWay {
  const conduit_host_item* item;
  IStringMap* properties;
};

thread_local int callbacksUnderWay = 0;
thread_local ItemUnderWay itemUnderWay = {nullptr, nullptr};

constexpr const char* Unexplained = "a callback threw an exception";

std::string Explained(const char* reason) noexcept {
  try {
    return std::string(Unexplained) + ": " + reason;
  } catch (const std::bad_alloc&) {
    return OutOfMemory;
  }
}

/// @returns why the callback failed; none when it returned.
template <typename Callback>
std::optional<std::string> Guarded(const Callback& callback) {
  std::optional<std::string> failure;
  ++callbacksUnderWay;
  try {
    callback();
  } catch (const std::exception& problem) {
    failure = Explained(problem.what());
  } catch (...) {
    failure = Explained("one that says nothing");
  }
  --callbacksUnderWay;
  return failure;
}

/// The contract rules null texts out, but modules that are still being written are run, too.
const char* NotNull(const char* text) { return text != nullptr ? text : ""; }

const void* DataOf(const void* data, std::int32_t length) {
  if (length < 0) {
    return nullptr;
  }
  return length == 0 ? "" : data;
}

}  // namespace

bool IsInCallback() { return callbacksUnderWay > 0; }

const char* PropertyOfCurrentItem(const conduit_host_item* item, const char* key) {
  const bool current = item != nullptr && item == itemUnderWay.item;
  return current && itemUnderWay.properties != nullptr ? itemUnderWay.properties->Get(key)
                                                       : nullptr;
}

CallbackHost::CallbackHost(const conduit_host_callbacks& callbacks)
    : callbacks(callbacks), recorder({&lastCall, &end}, {}) {}

void CallbackHost::Follow(const std::filesystem::path& log) {
  const std::lock_guard lock(readerLogMutex);
  readerLog.emplace(log);
}

std::filesystem::path CallbackHost::FollowOwnLog() {
  const std::lock_guard lock(readerLogMutex);
  if (!readerLog || !readerLog->IsOwn()) {
    readerLog.emplace();
  }
  return readerLog->File();
}

void CallbackHost::LastCall::OnCallReturned(const CallReturned& call) {
  try {
    reasons = call.reasons;
  } catch (const std::bad_alloc&) {
    // The result alone then tells of the failure.
  }
}

std::int32_t CallbackHost::Call(const std::string& name, const std::string& meaning,
                                const std::function<std::int32_t()>& call) {
  std::exception_ptr thrown;
  lastCall.reasons.clear();
  const std::int32_t result = recorder.Call(name, meaning, [&]() -> std::int32_t {
    try {
      return call();
    } catch (...) {
      thrown = std::current_exception();
      return CONDUIT_HOST_FAILED;
    }
  });
  CheckRecorder();
  TellReaderLines();
  // What ended the run may have been held until now.
  TellEnd();
  if (thrown) {
    std::rethrow_exception(thrown);
  }
  if (result != ResultSuccess) {
    // A negative number of the module's would be taken for one of this library's.
    throw HostError(result > 0 ? result : CONDUIT_HOST_FAILED,
                    FailureText({name, meaning, result, lastCall.reasons}));
  }
  return result;
}

void CallbackHost::Hand(conduit_host_entry entry, void* context, const char* name,
                        const char* value) {
  const auto problem = Guarded([&] { entry(context, NotNull(name), NotNull(value)); });
  if (problem) {
    throw HostError(CONDUIT_HOST_CALLBACK_FAILED, *problem);
  }
}

void CallbackHost::BeginRun() {
  recorder.Begin({"", ""});
  endTold = false;
  watch.Begin();
}

template <typename... Parameters, typename... Arguments>
void CallbackHost::Tell(void (*callback)(void*, Parameters...), Arguments... arguments) {
  if (callback == nullptr) {
    return;
  }
  if (const auto problem = Guarded([&] { callback(callbacks.context, arguments...); })) {
    Fail(problem->c_str());
  }
}

template <typename... Parameters, typename... Arguments>
std::int32_t CallbackHost::Ask(std::int32_t (*callback)(void*, Parameters...),
                               Arguments... arguments) {
  std::int32_t answer = 0;
  if (callback == nullptr) {
    return answer;
  }
  if (const auto problem = Guarded([&] { answer = callback(callbacks.context, arguments...); })) {
    Fail(problem->c_str());
  }
  return answer;
}

void CallbackHost::Fail(const char* reason) noexcept {
  if (!watch.Say(RunWatch::Outcome::CallbackFailed, reason)) {
    const std::lock_guard lock(failureMutex);
    try {
      failure = reason;
    } catch (const std::bad_alloc&) {
      failure = OutOfMemory;
    }
  }
}

/// What the recorder had no memory for may have been the end of the run.
void CallbackHost::CheckRecorder() noexcept {
  if (recorder.HasFailed()) {
    Fail(OutOfMemory);
    recorder.Recover();
  }
}

std::optional<std::string> CallbackHost::TakeFailure() {
  const std::lock_guard lock(failureMutex);
  return std::exchange(failure, std::nullopt);
}

void CallbackHost::TellReaderLines() noexcept {
  std::vector<ReaderLine> lines;
  try {
    const std::lock_guard lock(readerLogMutex);
    if (readerLog) {
      lines = readerLog->NewLines();
    }
  } catch (const std::exception& problem) {
    Fail(problem.what());
  }
  for (const ReaderLine& line : lines) {
    const std::int32_t level = line.level.value_or(-1);
    Tell(callbacks.reader_line, level, line.text.c_str(), line.document.c_str());
    const conduit_host_reader_line whole = {sizeof whole, level, line.text.c_str(),
                                            line.document.c_str(), line.warning.c_str()};
    Tell(callbacks.reader_log, &whole);
  }
}

void CallbackHost::TellEnd() {
  if (end.WaitFor(std::chrono::milliseconds(0)) && !endTold.exchange(true)) {
    Tell(callbacks.ended);
    watch.Say(RunWatch::Outcome::ReaderEnded);
  }
}

void CallbackHost::Log(std::int32_t level, const char* tag, const char* message) {
  Tell(callbacks.log, level, NotNull(tag), NotNull(message));
  // Only these explain a failure, and the trace comes with every item.
  if (level <= MessageUnknownName) {
    recorder.Log(level, tag, message);
    CheckRecorder();
  }
}

std::int32_t CallbackHost::SendData(const char* name, ItemType itemType, std::int32_t length,
                                    const void* data, IStringMap* properties, bool last) {
  TellReaderLines();
  const conduit_host_item item = {
      sizeof item,
      NotNull(name),
      itemType,
      length,
      DataOf(data, length),
      properties != nullptr ? properties->Get(ItemProperty::Feature) : nullptr,
      last ? 1 : 0,
  };
  const ItemUnderWay outer = itemUnderWay;
  itemUnderWay = {&item, properties};
  const std::int32_t answer = Ask(callbacks.item, &item);
  itemUnderWay = outer;
  return answer;
}

void CallbackHost::SendEvent(const char* name) {
  TellReaderLines();
  Tell(callbacks.event, NotNull(name));
  recorder.SendEvent(name);
  CheckRecorder();
}

void CallbackHost::BeginData() {
  TellReaderLines();
  Tell(callbacks.begin);
}

void CallbackHost::EndData() {
  TellReaderLines();
  Tell(callbacks.end);
}

std::int32_t CallbackHost::SetActiveScript(const char* name) {
  TellReaderLines();
  return Ask(callbacks.script, NotNull(name));
}

void CallbackHost::ReportState(const char* text) {
  TellReaderLines();
  Tell(callbacks.state, NotNull(text));
  recorder.ReportState(text);
  CheckRecorder();
  TellEnd();
}

void CallbackHost::ReportError(const char* text) {
  TellReaderLines();
  Tell(callbacks.error, NotNull(text));
  recorder.ReportError(text);
  CheckRecorder();
}

}  // namespace conduit
