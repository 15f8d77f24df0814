#pragma once

#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "hosting/Happening.h"
#include "hosting/ReaderLogFile.h"
#include "interfaces/IInputModuleHost.h"
#include "interfaces/IModuleLogger.h"

namespace conduit {

/// The host as a module sees it: turns every call into a Happening and hands it
/// to the sinks in order of arrival, from any number of threads.
///
/// REQUIRES: outlives the module, and the sinks outlive it.
class HostRecorder final : public IModuleLogger, public IInputModuleHost {
 public:
  /// @param refusedSignals  names of the items that are answered with StopRecord
  HostRecorder(std::vector<ISink*> sinks, std::set<std::string> refusedSignals);
  virtual ~HostRecorder() = default;
  HostRecorder(const HostRecorder&) = delete;
  HostRecorder& operator=(const HostRecorder&) = delete;

  /// From now on hands out what stands newly in the reader library's log, each
  /// time before what happens next.
  void Follow(const std::filesystem::path& log);

  void Record(const Happening& happening);

  /// Calls the module and records how it went.
  /// @param name     the call as a log would name it, "SetParameter LogLevel=2"
  /// @param failure  what it means for the user when the result is not 0
  /// @returns the call's result.
  std::int32_t Call(const std::string& name, const std::string& failure,
                    const std::function<std::int32_t()>& call);

  /// Why a sink could not go on; it receives nothing any more. The first counts.
  std::optional<std::string> SinkFailure() const;

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
  void HandOut(const Happening& happening);
  void HandToSinks(const Happening& happening);

  std::vector<ISink*> sinks;
  const std::set<std::string> refusedSignals;

  mutable std::mutex mutex;
  std::optional<ReaderLogFile> readerLog;
  std::optional<std::string> sinkFailure;
  std::vector<std::string> said;  ///< by the module since the last call began
  bool errorStands = false;
};

}  // namespace conduit
