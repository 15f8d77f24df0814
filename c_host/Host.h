#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

#include "c_host/CallbackHost.h"
#include "hosting/LoadedModule.h"

namespace conduit {

/// One host: its module, and the order in which its calls may come. What is refused or fails
/// is thrown as a HostError.
class Host {
 public:
  explicit Host(const conduit_host_callbacks& callbacks) : border(callbacks) {}

  /// Does a call, keeps what it came to, and gives the result. Refuses one from within a
  /// callback, or while another is under way. [any thread]
  std::int32_t Do(const std::function<void(Host&)>& call);

  // Only from within Do.
  void Load(const std::filesystem::path& file);
  void SetSession(const std::string& location) const;
  void FollowReaderLog(const std::string& file);
  void SetParameter(const char* name, const char* value);
  std::string Parameter(const char* name);
  void ListParameters(conduit_host_entry entry, void* context);
  void AddCondition(const char* name, const char* value);
  void AddAction(const char* conditionName, const char* conditionValue, const char* actionName,
                 const char* actionValue);
  void ListConditions(conduit_host_entry entry, void* context);
  void Initialise();
  void Shutdown();
  /// Whatever state it is in.
  void End();

  // [any thread; not within Do]
  std::int32_t Wait(std::int32_t milliseconds);
  void Interrupt();
  std::string LastError() const;

 private:
  std::int32_t Keep(std::int32_t result, const std::string& text);
  LoadedModule& Loaded();
  LoadedModule& Stopped();
  void RequireStopped() const;
  void Call(const std::string& failure, const std::function<std::int32_t()>& call);

  CallbackHost border;
  std::optional<LoadedModule> module;
  bool running = false;
  std::atomic_flag busy;

  mutable std::mutex errorMutex;
  std::string lastError;
};

}  // namespace conduit
