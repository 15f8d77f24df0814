#pragma once

#include <atomic>
#include <cstddef>
#include <deque>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "hosting/DocumentTracker.h"
#include "hosting/ModuleRun.h"
#include "hosting/ReaderLogFile.h"
#include "hosting/RunListener.h"

namespace conduit {

/// The host as a module sees it: tells every call to the listeners in order of
/// arrival, from any number of threads.
///
/// What a module says is held back until it is known what it belongs to: a log line
/// until the next thing happens, which may say the same, and what comes from within a
/// call until the call returns or the reader is seen to run. Thus each listener is told
/// whether a text comes again, and can show it once.
///
/// Nothing is thrown into the module. When there is no memory left for what it says, or for
/// what a listener makes of it, that is the failure of the run: what the module says from
/// then on is dropped, and some memory is set free that was kept to end the run with.
///
/// REQUIRES: outlives the module, and the listeners outlive it.
class HostRecorder final : public ModuleHost {
 public:
  /// @param refusedSignals  names of the items that are answered with StopRecord
  HostRecorder(std::vector<RunListener*> listeners, std::set<std::string> refusedSignals);

  void Follow(const std::filesystem::path& log) override;
  std::filesystem::path FollowOwnLog() override;

  // What the host itself has to tell. [any thread]
  void Begin(const RunBegan& run);
  void Warn(const Warned& warning);
  /// What the run was not told: lines of the reader's log, and pages that are Unread.
  /// @returns whether there is any of it.
  bool TellMissing();
  void PassTime();
  void End(const RunEnded& end);

  /// Tells how it went, too.
  std::int32_t Call(const std::string& name, const std::string& failure,
                    const std::function<std::int32_t()>& call) override;

  /// Whether a listener could not go on, or there was no memory. [any thread]
  bool HasFailed() const noexcept { return failed; }
  /// Why, of each that failed in their order, every text once.
  std::vector<std::string> Failures() const;
  /// Forgets the failure, and goes on with the listeners that have not failed themselves.
  void Recover() noexcept;
  /// Whether the listener goes on.
  bool IsTold(const RunListener& listener) const;

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

  template <typename Work>
  void Locked(const Work& work) noexcept;
  template <typename Work>
  void WhileModuleSpeaks(const Work& work) noexcept;
  void Fail(const std::exception& problem) noexcept;
  template <typename Operation>
  void TellAll(const Operation& tell);
  template <typename Happening>
  void Tell(void (RunListener::*operation)(const Happening&), const Happening& happening);
  void TellError(ErrorReported& error);
  /// Tells what is held first, for something else has happened.
  template <typename Happening>
  void TellNext(void (RunListener::*operation)(const Happening&), const Happening& happening);
  void TellWaiting();
  void TellReaderLines();
  void Hold(Said said);
  void TellHeld();
  std::vector<std::string> MarkReasons();

  std::vector<RunListener*> listeners;
  const std::set<std::string> refusedSignals;

  mutable std::mutex mutex;
  DocumentTracker documents;
  std::optional<ReaderLogFile> readerLog;
  bool missesReaderLines = false;
  std::unique_ptr<char[]> reserve;  ///< set free to end the run with
  std::atomic<bool> failed = false;
  bool outOfMemory = false;
  std::vector<std::string> failures;  ///< none when there was no memory for its text
  std::deque<Said> held;
  bool callUnderWay = false;
  bool errorStands = false;
};

}  // namespace conduit
