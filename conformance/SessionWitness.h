#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "conformance/Setting.h"
#include "hosting/EndOfSession.h"
#include "hosting/LoadedModule.h"
#include <conduit/IInputModuleHost.h>
#include <conduit/IModuleLogger.h>

namespace conduit {

/// What a module delivered, and the first breach of each kind; an empty text is
/// none.
struct Testimony {
  std::string callFault;     ///< reserved operations, log lines
  std::string bracketFault;  ///< BeginData and EndData
  std::string itemFault;
  std::string eventFault;  ///< what belongs before and after an event
  std::string lateCall;    ///< what came after the host had closed
  int documents = 0;
  int items = 0;
  int states = 0;
  int errors = 0;  ///< with a text
  std::vector<std::string> events;
  std::vector<std::string> scripts;
};

/// A host and logger that holds every call against the contract.
///
/// REQUIRES: outlives the module.
class SessionWitness final : public IModuleLogger, public IInputModuleHost {
 public:
  SessionWitness() = default;
  virtual ~SessionWitness() = default;
  SessionWitness(const SessionWitness&) = delete;
  SessionWitness& operator=(const SessionWitness&) = delete;

  /// Becomes the module's host, sets what its reader needs, and starts that on the
  /// session.
  /// @returns what Initialise answered.
  std::int32_t Start(const LoadedModule& module, const std::filesystem::path& session,
                     const std::vector<Setting>& settings);

  /// @returns whether the session came to its end in time.
  bool WaitForEnd(std::chrono::milliseconds time);

  /// Waits until a document or an event has come, at most so long.
  void WaitForDelivery(std::chrono::milliseconds time);

  /// From here on nothing may be delivered.
  void Close();

  /// From here on each script is answered with a failure.
  void RefuseScripts();

  /// Has `action` called once, within the next call of that operation and on its
  /// thread. [before Start]
  void ActWithin(const std::string& operation, std::function<void()> action);

  /// @param complete  whether the session came to its end: then nothing may be open
  Testimony Heard(bool complete = false) const;

  void Reserved1() override;
  void Reserved2() override;
  void Reserved3() override;
  void Reserved4() override;
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
  enum class Bracket { Begin, End };

  /// What came on one thread of the reader: only there is an order.
  struct ReaderThread {
    std::vector<Bracket> given;   ///< by BeginData and EndData
    std::vector<Bracket> wanted;  ///< by the events that were passed on
    std::string itemOutside;      ///< the first that came outside the brackets
    bool errorCleared = false;
    std::string unfinishedEvent;           ///< the state was not reported since
    std::optional<int> unfinishedBarcode;  ///< its feature: others of its read follow
  };

  /// Takes note of a call and of a text that must not be null.
  ReaderThread& Note(const char* operation, const char* text);
  void NoteReserved();
  void NoteBarcode(ReaderThread& thread, const std::string& item, const char* feature, bool last);
  void RequireStateBefore(ReaderThread& thread);
  std::string BracketFault(bool complete) const;
  void Act(const std::string& operation);

  mutable std::mutex mutex;
  std::condition_variable delivered;
  bool closed = false;
  std::int32_t scriptAnswer = 0;
  std::string actWithin;
  std::function<void()> action;
  Testimony heard;
  std::map<std::thread::id, ReaderThread> threads;
  EndOfSession end;
};

}  // namespace conduit
