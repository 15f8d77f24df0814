#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "hosting/LoadedModule.h"
#include "hosting/RunListener.h"
#include <conduit/IInputModuleHost.h>
#include <conduit/IModuleLogger.h>

namespace conduit {

/// The host as its ModuleRun sees it: receives from the module, and makes the calls to it.
class ModuleHost : public IModuleLogger, public IInputModuleHost {
 public:
  ModuleHost() = default;
  virtual ~ModuleHost() = default;
  ModuleHost(const ModuleHost&) = delete;
  ModuleHost& operator=(const ModuleHost&) = delete;

  /// Calls the module, with the reasons of a failure at hand.
  /// @param name     the call as a log would name it, "SetParameter LogLevel=2"
  /// @param failure  what it means for the user when the result is not 0
  /// @returns the call's result.
  virtual std::int32_t Call(const std::string& name, const std::string& failure,
                            const std::function<std::int32_t()>& call) = 0;

  /// From now on tells what stands newly in the reader library's log, each time
  /// before what happens next.
  virtual void Follow(const std::filesystem::path& log) = 0;

  /// The same with a log that is made for this host alone and goes with it.
  /// @returns the file that the reader library is to write.
  virtual std::filesystem::path FollowOwnLog() = 0;
};

/// A module from its loading to its end, for every host. Stops a reader that still runs
/// before the module goes.
///
/// REQUIRES: the host outlives this. The library also outlives the exceptions that leave the
/// operations, for a module's own have their code there.
class ModuleRun {
 public:
  /// Throws a ModuleError when the library gives no module.
  ModuleRun(const ModuleLibrary& library, ModuleHost& host);
  ~ModuleRun();
  ModuleRun(const ModuleRun&) = delete;
  ModuleRun& operator=(const ModuleRun&) = delete;

  /// Has the readers that start from now on play the session, or watch it as a folder that
  /// fills. Throws a std::runtime_error that names it and the reason when it cannot be read.
  static void UseSession(const std::filesystem::path& session, bool watched);

  const LoadedModule& Module() const { return module; }
  bool IsRunning() const { return running; }

  /// @param shown  the setting as the user gave it
  std::int32_t SetParameter(const std::string& name, const std::string& value,
                            const std::string& shown);

  std::int32_t Start();

  /// Stops the reader whether or not there is memory to tell of it.
  /// @param stopped  called as soon as it stands still
  std::int32_t Stop(const std::function<void()>& stopped = [] {});

 private:
  const LoadedModule module;
  ModuleHost& host;
  bool running = false;
};

/// What a user reads of a call that failed: what it means, the result, a line for each reason.
std::string FailureText(const CallReturned& call);

}  // namespace conduit
