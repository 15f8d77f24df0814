#include "hosting/HostRecorder.h"

#include <cstddef>
#include <exception>
#include <utility>

#include "interfaces/ResultCode.h"

namespace conduit {

namespace {

/// The highest level whose lines explain a refusal: failures, and requests that
/// name no known parameter.
constexpr std::int32_t LastExplainingLevel = 1;

/// The contract rules null texts out, but this host also runs modules that are
/// still being written.
std::string CopyText(const char* text) { return text ? text : ""; }

std::optional<std::string> CopyData(const void* data, std::int32_t length) {
  if (length <= 0) {
    return "";
  }
  if (!data) {
    return std::nullopt;
  }
  return std::string(static_cast<const char*>(data), static_cast<std::size_t>(length));
}

std::optional<std::string> CopyFeature(IStringMap* properties) {
  const char* feature = properties ? properties->Get("feature") : nullptr;
  return feature ? std::optional<std::string>(feature) : std::nullopt;
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

HostRecorder::HostRecorder(std::vector<ISink*> sinks, std::set<std::string> refusedSignals)
    : sinks(std::move(sinks)), refusedSignals(std::move(refusedSignals)) {}

void HostRecorder::Record(const Happening& happening) {
  const std::lock_guard lock(mutex);
  HandOut(happening);
}

void HostRecorder::Follow(const std::filesystem::path& log) {
  const std::lock_guard lock(mutex);
  readerLog.emplace(log);
}

void HostRecorder::HandOut(const Happening& happening) {
  if (readerLog) {
    for (const ReaderLine& line : readerLog->NewLines()) {
      HandToSinks(line);
    }
  }
  HandToSinks(happening);
}

void HostRecorder::HandToSinks(const Happening& happening) {
  for (ISink*& sink : sinks) {
    if (!sink) {
      continue;
    }
    // An exception that left here would unwind through the module and the
    // reader's threads.
    try {
      sink->Receive(happening);
    } catch (const std::exception& problem) {
      sink = nullptr;
      if (!sinkFailure) {
        sinkFailure = problem.what();
      }
    }
  }
}

std::int32_t HostRecorder::Call(const std::string& name, const std::string& failure,
                                const std::function<std::int32_t()>& call) {
  {
    const std::lock_guard lock(mutex);
    said.clear();
    HandOut(CallBegan{name});
  }
  // Without the lock: the module calls back before it returns.
  const std::int32_t result = call();

  const std::lock_guard lock(mutex);
  HandOut(
      CallReturned{failure, result,
                   result == ResultSuccess ? std::vector<std::string>() : WithoutRepeats(said)});
  said.clear();
  return result;
}

std::optional<std::string> HostRecorder::SinkFailure() const {
  const std::lock_guard lock(mutex);
  return sinkFailure;
}

void HostRecorder::Log(std::int32_t level, const char* tag, const char* message) {
  const LogLine line{level, CopyText(tag), CopyText(message)};
  const std::lock_guard lock(mutex);
  if (level <= LastExplainingLevel) {
    said.push_back(line.message);
  }
  HandOut(line);
}

std::int32_t HostRecorder::SendData(const char* name, ItemType itemType, std::int32_t length,
                                    const void* data, IStringMap* properties, bool last) {
  ItemReceived item{CopyText(name),          itemType, length, CopyData(data, length),
                    CopyFeature(properties), last,     0};
  if (refusedSignals.contains(item.name)) {
    item.answer = StopRecord;
  }
  Record(item);
  return item.answer;
}

void HostRecorder::SendEvent(const char* name) { Record(EventReceived{CopyText(name)}); }

void HostRecorder::BeginData() { Record(DataBegan{}); }

void HostRecorder::EndData() { Record(DataEnded{}); }

std::int32_t HostRecorder::SetActiveScript(const char* name) {
  Record(ScriptActivated{CopyText(name)});
  return ResultSuccess;
}

void HostRecorder::ReportState(const char* text) { Record(StateReported{CopyText(text)}); }

void HostRecorder::ReportError(const char* text) {
  const std::string copy = CopyText(text);
  const std::lock_guard lock(mutex);
  const bool routine = copy.empty() && !errorStands;
  errorStands = !copy.empty();
  if (errorStands) {
    said.push_back(copy);
  }
  HandOut(ErrorReported{copy, routine});
}

}  // namespace conduit
