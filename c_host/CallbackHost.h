#pragma once

#include <atomic>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "c_host/RunWatch.h"
#include "hosting/EndOfSession.h"
#include "hosting/HostRecorder.h"
#include "hosting/ModuleRun.h"
#include "hosting/ReaderLogFile.h"
#include <conduit/conduit_host.h>

namespace conduit {

/// Whether this thread is within a callback of any host.
bool IsInCallback();

/// The value of a property of the item that this thread's callback is handed; null for any
/// other item.
const char* PropertyOfCurrentItem(const conduit_host_item* item, const char* key);

/// The host as a module sees it: hands every call to a callback at once, on its thread, and
/// takes down what explains a failure and what ends a run.
///
/// REQUIRES: outlives the module.
class CallbackHost final : public ModuleHost {
 public:
  explicit CallbackHost(const conduit_host_callbacks& callbacks);

  void Follow(const std::filesystem::path& log) override;
  /// The same file for as long as no other is followed.
  std::filesystem::path FollowOwnLog() override;

  /// What fails is thrown: as a HostError, or as what the module threw. [one call at a time]
  std::int32_t Call(const std::string& name, const std::string& meaning,
                    const std::function<std::int32_t()>& call) override;

  /// Hands one entry of a list to its callback; what it throws becomes a HostError.
  static void Hand(conduit_host_entry entry, void* context, const char* name, const char* value);

  /// Why a callback failed that belongs to no run under way; once.
  std::optional<std::string> TakeFailure();

  void BeginRun();
  RunWatch& Watch() { return watch; }

  void Log(std::int32_t level, const char* tag, const char* message) override;
  std::int32_t SendData(const char* name, ItemType itemType, std::int32_t length, const void* data,
                        IStringMap* properties, bool last) override;
  void SendEvent(const char* name) override;
  void BeginData() override;
  void EndData() override;
  std::int32_t SetActiveScript(const char* name) override;
  void ReportState(const char* text) override;
  void ReportError(const char* text) override;

 private:
  /// Keeps the reasons of the last call's failure.
  class LastCall final : public RunListener {
   public:
    void OnCallReturned(const CallReturned& call) override;
    std::vector<std::string> reasons;
  };

  template <typename... Parameters, typename... Arguments>
  void Tell(void (*callback)(void*, Parameters...), Arguments... arguments);
  template <typename... Parameters, typename... Arguments>
  std::int32_t Ask(std::int32_t (*callback)(void*, Parameters...), Arguments... arguments);
  void Fail(const char* reason) noexcept;
  void CheckRecorder() noexcept;
  void TellReaderLines() noexcept;
  void TellEnd();

  const conduit_host_callbacks callbacks;
  RunWatch watch;
  LastCall lastCall;
  EndOfSession end;
  std::atomic<bool> endTold = false;
  HostRecorder recorder;  ///< behind the listeners that it tells

  std::mutex failureMutex;
  std::optional<std::string> failure;

  std::mutex readerLogMutex;
  std::optional<ReaderLogFile> readerLog;
};

}  // namespace conduit
