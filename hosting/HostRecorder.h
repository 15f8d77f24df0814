#pragma once

#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "hosting/ReaderLogFile.h"
#include "hosting/RunListener.h"
#include <conduit/IInputModuleHost.h>
#include <conduit/IModuleLogger.h>

namespace conduit {

/// The host as a module sees it: tells every call to the listeners in order of
/// arrival, from any number of threads.
///
/// What a module says is held back until it is known what it belongs to: a log line
/// until the next thing happens, which may say the same, and what comes from within a
/// call until the call returns or the reader is seen to run. Thus each listener is told
/// whether a text comes again, and can show it once.
///
/// REQUIRES: outlives the module, and the listeners outlive it.
class HostRecorder final : public IModuleLogger, public IInputModuleHost {
 public:
  /// @param refusedSignals  names of the items that are answered with StopRecord
  HostRecorder(std::vector<RunListener*> listeners, std::set<std::string> refusedSignals);
  virtual ~HostRecorder() = default;
  HostRecorder(const HostRecorder&) = delete;
  HostRecorder& operator=(const HostRecorder&) = delete;

  /// From now on tells what stands newly in the reader library's log, each time
  /// before what happens next.
  void Follow(const std::filesystem::path& log);

  // What the host itself has to tell. [any thread]
  void Begin(const RunBegan& run);
  void Warn(const Warned& warning);
  void Count(const PagesCounted& pages);
  void PassTime();
  void End(const RunEnded& end);

  /// Calls the module and tells how it went.
  /// @param name     the call as a log would name it, "SetParameter LogLevel=2"
  /// @param failure  what it means for the user when the result is not 0
  /// @returns the call's result.
  std::int32_t Call(const std::string& name, const std::string& failure,
                    const std::function<std::int32_t()>& call);

  /// Why a listener could not go on. The first counts.
  std::optional<std::string> ListenerFailure() const;

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
  using Said = std::variant<LogLine, StateReported, ErrorReported>;

  void TellAll(const std::function<void(RunListener&)>& tell);
  template <typename Happening>
  void Tell(void (RunListener::*operation)(const Happening&), const Happening& happening);
  /// Tells what is held first, for something else has happened.
  template <typename Happening>
  void TellNext(void (RunListener::*operation)(const Happening&), const Happening& happening);
  void TellNext(void (RunListener::*operation)());
  void TellReaderLines();
  void Hold(Said said);
  void TellHeld();
  std::vector<std::string> MarkReasons();

  std::vector<RunListener*> listeners;
  const std::set<std::string> refusedSignals;

  mutable std::mutex mutex;
  std::optional<ReaderLogFile> readerLog;
  std::optional<std::string> listenerFailure;
  std::deque<Said> held;
  bool callUnderWay = false;
  bool errorStands = false;
};

}  // namespace conduit
