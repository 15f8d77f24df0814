#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "hosting/EndOfSession.h"
#include "hosting/LoadedModule.h"
#include "interfaces/IInputModuleHost.h"
#include "interfaces/IModuleLogger.h"

namespace conduit {

/// What a module delivered, and the first breach of each kind; an empty text is
/// none.
struct Testimony {
  std::string bracketFault;
  std::string itemFault;
  std::string lateCall;  ///< what came after the host had closed
  int documents = 0;
  int items = 0;
  bool documentOpen = false;
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

  /// Becomes the module's host and starts its reader on that session.
  /// @returns what Initialise answered.
  std::int32_t Start(const LoadedModule& module, const std::filesystem::path& session);

  /// @returns whether the session came to its end in time.
  bool WaitForEnd(std::chrono::milliseconds time);

  /// Waits until a document or an event has come, at most so long.
  void WaitForDelivery(std::chrono::milliseconds time);

  /// From here on nothing may be delivered.
  void Close();

  Testimony Heard() const;

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
  /// Takes note of a call and of a text that must not be null.
  void Note(const char* operation, const char* text);

  mutable std::mutex mutex;
  std::condition_variable delivered;
  bool closed = false;
  Testimony heard;
  EndOfSession end;
};

}  // namespace conduit
