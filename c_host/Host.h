#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "c_host/CallbackHost.h"
#include "hosting/ModuleRun.h"

namespace conduit {

/// Copies as much of the text as there is room for, with a NUL.
/// @param buffer  may be null
/// @returns the whole text's length.
std::size_t CopyText(std::string_view text, char* buffer, std::size_t capacity);

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
  /// @param file  null for one of this host's own
  void FollowReaderLog(const char* file);
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
  /// As CopyText.
  std::size_t LastError(char* buffer, std::size_t capacity) const;

 private:
  std::int32_t Keep(std::int32_t result, const char* text) noexcept;
  ModuleRun& Loaded();
  ModuleRun& Stopped();
  void RequireStopped() const;

  CallbackHost border;
  std::optional<ModuleRun> run;
  std::atomic_flag busy;

  mutable std::mutex errorMutex;
  std::string lastError;
};

}  // namespace conduit
