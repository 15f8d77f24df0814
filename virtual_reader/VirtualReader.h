#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include "virtual_reader/Playback.h"
#include "virtual_reader/ReaderLog.h"
#include "virtual_reader/ReaderResult.h"

namespace conduit {

/// The reader behind the four functions. Every operation may be called on any
/// thread, also from within a callback, and none throws.
class VirtualReader {
 public:
  ReaderResult EnableLogging(bool enable, std::int32_t level, std::int32_t mask, const char* file);

  /// Refuses to start while a session is being played, and on the thread that
  /// plays one. The reason for any other refusal goes to the error callback
  /// before this returns.
  ReaderResult Initialise(const ReaderCallbacks& callbacks);

  ReaderState State() const { return state; }

  void Shutdown();

  /// Lets go of the thread and the log when the library is unloaded.
  void Release();

 private:
  void Start(const ReaderCallbacks& callbacks);
  void ForgetAfterFork();
  void ReportRefusal(const std::string& reason, const ReaderCallbacks& callbacks);

  ReaderLog log;
  std::atomic<ReaderState> state = ReaderState::NotInitialised;
  /// Held while a playback is made or waited for, so never taken on the thread
  /// that plays: that is the one waited for.
  std::mutex lifecycle;
  std::unique_ptr<Playback> playback;
  std::int64_t process = 0;  ///< that has started the playback
};

}  // namespace conduit
