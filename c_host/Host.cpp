#include "c_host/Host.h"

#include <chrono>
#include <exception>
#include <new>

#include "c_host/HostError.h"
#include "hosting/Utf8.h"
#include "platform/FilePath.h"
#include "platform/SessionLocation.h"
#include <conduit/ParameterName.h>

namespace conduit {
namespace {

/// Gives the mark back that a call is under way.
class Turn {
 public:
  explicit Turn(std::atomic_flag& busy) : busy(busy) {}
  ~Turn() { busy.clear(); }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  std::atomic_flag& busy;
};

}  // namespace

std::size_t CopyText(std::string_view text, char* buffer, std::size_t capacity) {
  if (buffer != nullptr && capacity > 0) {
    buffer[text.copy(buffer, capacity - 1)] = '\0';
  }
  return text.size();
}

std::int32_t Host::Do(const std::function<void(Host&)>& call) {
  if (IsInCallback()) {
    return Keep(CONDUIT_HOST_IN_CALLBACK,
                "called from within a callback, where it could wait for itself; interrupt the "
                "wait, and do it behind that");
  }
  if (busy.test_and_set()) {
    return Keep(CONDUIT_HOST_BUSY, "another thread's call on this host is under way");
  }
  const Turn turn(busy);
  try {
    call(*this);
    if (const auto failure = border.TakeFailure()) {
      return Keep(CONDUIT_HOST_CALLBACK_FAILED, failure->c_str());
    }
    return Keep(CONDUIT_HOST_SUCCESS, "");
  } catch (const HostError& problem) {
    return Keep(problem.result, problem.what());
  } catch (const std::bad_alloc&) {
    return Keep(CONDUIT_HOST_FAILED, OutOfMemory);
  } catch (const std::exception& problem) {
    return Keep(CONDUIT_HOST_FAILED, problem.what());
  } catch (...) {
    return Keep(CONDUIT_HOST_FAILED, "the module threw an exception that says nothing");
  }
}

std::int32_t Host::Keep(std::int32_t result, const char* text) noexcept {
  const std::lock_guard lock(errorMutex);
  try {
    lastError = text;
  } catch (const std::bad_alloc&) {
    lastError = OutOfMemory;
  }
  return result;
}

std::size_t Host::LastError(char* buffer, std::size_t capacity) const {
  const std::lock_guard lock(errorMutex);
  return CopyText(lastError, buffer, capacity);
}

ModuleRun& Host::Loaded() {
  if (!run) {
    throw HostError(CONDUIT_HOST_NOT_LOADED, "no module has been loaded");
  }
  return *run;
}

void Host::RequireStopped() const {
  if (run && run->IsRunning()) {
    throw HostError(CONDUIT_HOST_RUNNING, "the reader runs; shut it down first");
  }
}

ModuleRun& Host::Stopped() {
  ModuleRun& loaded = Loaded();
  RequireStopped();
  return loaded;
}

void Host::Load(const std::filesystem::path& file) {
  if (run) {
    throw HostError(CONDUIT_HOST_ALREADY_LOADED,
                    "a module has been loaded already; a host has one");
  }
  // Stays loaded while what the module threw is read, whose code it may have.
  std::optional<ModuleLibrary> library;
  try {
    library.emplace(file);
    run.emplace(*library, border);
  } catch (const ModuleError& problem) {
    throw HostError(CONDUIT_HOST_CANNOT_LOAD, problem.what());
  } catch (const std::exception& problem) {
    throw HostError(CONDUIT_HOST_CANNOT_LOAD,
                    ModuleError(file, std::string("it threw ") + problem.what()).what());
  } catch (...) {
    throw HostError(CONDUIT_HOST_CANNOT_LOAD, ModuleError(file, "it threw").what());
  }
}

void Host::SetSession(const std::string& location) const {
  RequireStopped();
  const bool watched = location.starts_with(WatchPrefix);
  try {
    ModuleRun::UseSession(PathFromUtf8(watched ? location.substr(WatchPrefix.size()) : location),
                          watched);
  } catch (const std::runtime_error& problem) {
    throw HostError(CONDUIT_HOST_CANNOT_READ, problem.what());
  }
}

void Host::FollowReaderLog(const char* file) {
  Stopped();
  const std::string name = file != nullptr ? file : Utf8FromPath(border.FollowOwnLog());
  SetParameter(ParameterName::LogFileName, name.c_str());
  if (file != nullptr) {
    border.Follow(PathFromUtf8(name));
  }
}

void Host::SetParameter(const char* name, const char* value) {
  Stopped().SetParameter(name, value, Escaped(name) + "=" + Escaped(value));
}

std::string Host::Parameter(const char* name) {
  const LoadedModule& module = Loaded().Module();
  const char* value = nullptr;
  border.Call("GetParameter", "the module does not give " + Escaped(name),
              [&] { return module->GetParameter(name, &value); });
  return value != nullptr ? value : "";
}

void Host::ListParameters(conduit_host_entry entry, void* context) {
  for (const ListedParameter& parameter : Loaded().Module().Parameters()) {
    CallbackHost::Hand(entry, context, parameter.name.c_str(), parameter.value.c_str());
  }
}

void Host::AddCondition(const char* name, const char* value) {
  const LoadedModule& module = Stopped().Module();
  border.Call("AddCondition",
              "the module refuses the condition " + Escaped(name) + " " + Escaped(value),
              [&] { return module->AddCondition(name, value); });
}

void Host::AddAction(const char* conditionName, const char* conditionValue, const char* actionName,
                     const char* actionValue) {
  const LoadedModule& module = Stopped().Module();
  border.Call(
      "AddAction",
      "the module refuses the action " + Escaped(actionName) + " " + Escaped(actionValue) +
          " of the condition " + Escaped(conditionName) + " " + Escaped(conditionValue),
      [&] { return module->AddAction(conditionName, conditionValue, actionName, actionValue); });
}

void Host::ListConditions(conduit_host_entry entry, void* context) {
  const LoadedModule& module = Loaded().Module();
  const std::int32_t count = module->GetConditionCount();
  for (std::int32_t i = 0; i < count; ++i) {
    const char* name = nullptr;
    const char* value = nullptr;
    module->GetConditionAt(i, &name, &value);
    CallbackHost::Hand(entry, context, name, value);
  }
}

void Host::Initialise() {
  ModuleRun& stopped = Stopped();
  border.BeginRun();
  try {
    stopped.Start();
  } catch (...) {
    border.Watch().End();
    throw;
  }
}

void Host::Shutdown() {
  ModuleRun& loaded = Loaded();
  if (!loaded.IsRunning()) {
    throw HostError(CONDUIT_HOST_NOT_RUNNING, "the reader does not run");
  }
  loaded.Stop([this] { border.Watch().End(); });
}

void Host::End() {
  if (run && run->IsRunning()) {
    Shutdown();
  }
  run.reset();
}

std::int32_t Host::Wait(std::int32_t milliseconds) {
  if (IsInCallback()) {
    return Keep(CONDUIT_HOST_IN_CALLBACK,
                "waiting within a callback would keep the reader from ending");
  }
  using Outcome = RunWatch::Outcome;
  RunWatch& watch = border.Watch();
  switch (watch.WaitFor(
      milliseconds < 0 ? std::nullopt : std::optional(std::chrono::milliseconds(milliseconds)))) {
    case Outcome::ReaderEnded:
      return Keep(CONDUIT_HOST_SUCCESS, "");
    case Outcome::UnderWay:
      return Keep(CONDUIT_HOST_TIMED_OUT, "the reader has not ended yet");
    case Outcome::Interrupted:
      return Keep(CONDUIT_HOST_INTERRUPTED, "the wait was interrupted");
    case Outcome::CallbackFailed:
      try {
        return Keep(CONDUIT_HOST_CALLBACK_FAILED, watch.Reason().c_str());
      } catch (const std::bad_alloc&) {
        return Keep(CONDUIT_HOST_CALLBACK_FAILED, OutOfMemory);
      }
    case Outcome::NotRunning:
      break;
  }
  return Keep(CONDUIT_HOST_NOT_RUNNING, "the reader does not run");
}

void Host::Interrupt() { border.Watch().Say(RunWatch::Outcome::Interrupted); }

}  // namespace conduit
