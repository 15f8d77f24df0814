#include "console_host/SessionPlay.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "console_host/NamedPair.h"
#include "console_host/TextParts.h"
#include "hosting/ModuleRun.h"
#include "hosting/Utf8.h"
#include "platform/FilePath.h"
#include "platform/Interrupt.h"
#include <conduit/ParameterName.h>
#include <conduit/Reaction.h>
#include <conduit/ReaderEventCode.h>
#include <conduit/ResultCode.h>

namespace conduit {
namespace {

/// Sets all of the parameters rather than stopping at the first that is
/// refused: the user learns of every mistake at once.
void SetParameters(ModuleRun& run, const PlayOptions& options) {
  bool refused = false;
  bool unknown = false;
  for (const std::string& setting : options.settings) {
    const auto [name, value] = SplitPair(setting);
    const std::int32_t result = run.SetParameter(name, value, "--set " + setting);
    refused |= result != ResultSuccess;
    unknown |= result == ResultUnknownParameter;
  }
  if (unknown) {
    const auto nameOf = [](const ListedParameter& parameter) { return Escaped(parameter.name); };
    throw std::runtime_error("the module's parameters are: " +
                             Joined(run.Module().Parameters(), ", ", nameOf));
  }
  if (refused) {
    throw std::runtime_error("");
  }
}

bool HasParameter(const LoadedModule& module, const std::string& wanted) {
  return std::ranges::any_of(module.Parameters(),
                             [&](const auto& parameter) { return parameter.name == wanted; });
}

/// The value that the user gives a parameter; the last counts.
std::optional<std::string> ValueGiven(const PlayOptions& options, const std::string& wanted) {
  std::optional<std::string> value;
  for (const std::string& setting : options.settings) {
    if (auto [name, given] = SplitPair(setting); name == wanted) {
      value = std::move(given);
    }
  }
  return value;
}

/// Shows what the reader library says of its own: in a log that goes with the run, unless
/// the user names one. Without --log that is what the parameter's default admits: pages and
/// warnings.
void FollowReaderLog(const LoadedModule& module, const PlayOptions& options,
                     HostRecorder& recorder) {
  if (!HasParameter(module, ParameterName::LogFileName)) {
    return;
  }
  if (const auto given = ValueGiven(options, ParameterName::LogFileName)) {
    recorder.Follow(PathFromUtf8(*given));
  } else {
    const std::string file = Utf8FromPath(recorder.FollowOwnLog());
    module->SetParameter(ParameterName::LogFileName, file.c_str());
  }
  // The module tells of items and events at 2, the reader library from 3 on.
  constexpr std::int32_t itemsAndEvents = 2;
  if (options.logLevel >= itemsAndEvents && HasParameter(module, ParameterName::LogLevel) &&
      !ValueGiven(options, ParameterName::LogLevel)) {
    module->SetParameter(ParameterName::LogLevel, std::to_string(options.logLevel + 1).c_str());
  }
}

/// A module takes any event name, so that one with a mistake in it never comes.
void WarnOfUnknownEvent(const std::string& event, HostRecorder& recorder) {
  if (std::ranges::find(ReaderEventNames, std::string_view(event)) != std::end(ReaderEventNames)) {
    return;
  }
  recorder.Warn({"no reader event is named " + event +
                 "; the events are: " + Joined(ReaderEventNames, ", ")});
}

/// Adds one condition for each event, however many scripts it has: actions go
/// to the first condition of their event, and a second one would stay empty.
void AddReactions(const LoadedModule& module, const PlayOptions& options, HostRecorder& recorder) {
  std::set<std::string> events;
  for (const std::string& reaction : options.reactions) {
    const auto [event, script] = SplitPair(reaction);
    const bool firstOfEvent = events.insert(event).second;
    if (firstOfEvent) {
      WarnOfUnknownEvent(event, recorder);
    }
    const std::int32_t result = recorder.Call(
        "AddCondition and AddAction " + reaction, "the module refuses --on " + reaction,
        [&, firstOfEvent, &value = event, &action = script]() -> std::int32_t {
          if (firstOfEvent) {
            const std::int32_t added =
                module->AddCondition(ConditionKind::ReceiveEvent, value.c_str());
            if (added != ResultSuccess) {
              return added;
            }
          }
          return module->AddAction(ConditionKind::ReceiveEvent, value.c_str(),
                                   ActionKind::SetActiveScript, action.c_str());
        });
    if (result != ResultSuccess) {
      throw std::runtime_error("");
    }
  }
}

RunEnded WaitForEnd(EndOfSession& end, HostRecorder& recorder) {
  // How long a Ctrl-C may go unnoticed: a signal handler cannot notify.
  constexpr std::chrono::milliseconds pollInterval(50);
  while (!end.WaitFor(pollInterval)) {
    if (recorder.HasFailed()) {
      return {EndReason::Failed, ""};
    }
    if (InterruptStatus() != 0) {
      return {EndReason::Interrupted, ""};
    }
    recorder.PassTime();
  }
  return {EndReason::ReaderTerminated, ""};
}

RunEnded PlayThrough(const ModuleLibrary& library, const PlayOptions& options,
                     HostRecorder& recorder, EndOfSession& end) {
  ModuleRun run(library, recorder);
  FollowReaderLog(run.Module(), options, recorder);
  SetParameters(run, options);
  AddReactions(run.Module(), options, recorder);
  if (run.Start() != ResultSuccess) {
    return {EndReason::Failed, ""};
  }
  RunEnded ended = WaitForEnd(end, recorder);
  run.Stop();
  return ended;
}

/// The end by an exception. Out of memory it takes none.
RunEnded FailedBy(const std::exception& problem) noexcept {
  if (dynamic_cast<const std::bad_alloc*>(&problem) == nullptr) {
    try {
      return {EndReason::Failed, problem.what()};
    } catch (const std::bad_alloc&) {
    }
  }
  return {EndReason::Failed, OutOfMemory};
}

RunEnded FailedBy(const HostRecorder& recorder) noexcept {
  try {
    return {EndReason::Failed, recorder.Failures().at(0)};
  } catch (const std::bad_alloc&) {
    return {EndReason::Failed, OutOfMemory};
  }
}

RunEnded LoadAndPlay(const PlayOptions& options, HostRecorder& recorder, EndOfSession& end) {
  if (!options.session.empty()) {
    ModuleRun::UseSession(PathFromUtf8(options.session), options.watch);
  }
  const ModuleLibrary library(PathFromUtf8(options.module));
  try {
    return PlayThrough(library, options, recorder, end);
  } catch (const std::exception& problem) {
    // Here, as what a module throws may need its library.
    return FailedBy(problem);
  }
}

}  // namespace

PlayOutcome Play(const PlayOptions& options, HostRecorder& recorder, EndOfSession& end) {
  PlayOutcome outcome = {};
  RunEnded& ended = outcome.ended;
  try {
    recorder.Begin({options.module, options.session});
    ended = LoadAndPlay(options, recorder, end);
  } catch (const std::exception& problem) {
    ended = FailedBy(problem);
  }
  outcome.complete = !recorder.TellMissing();
  if (recorder.HasFailed() && ended.message.empty()) {
    ended = FailedBy(recorder);
  }
  recorder.End(ended);
  return outcome;
}

}  // namespace conduit
