#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/LibraryHold.h"
#include "virtual_reader/LookAhead.h"
#include "virtual_reader/ReaderLog.h"
#include "virtual_reader/session/Session.h"
#include <conduit/HaldenReaderHighLevelAPI.h>

namespace conduit {

/// Where the reader sends what it reads. A null callback is not called.
struct ReaderCallbacks {
  ReaderDataCallback data;
  ReaderEventCallback event;
  ReaderErrorCallback error;
  void* context;
};

/// One session being played, on a thread of its own. It begins with the
/// construction. The destructor stops it and waits for the thread, so
/// REQUIRES: destroyed on another thread than that.
class Playback {
 public:
  /// @param opening  played as soon as the device is connected, before the session's steps
  /// @param state    set before the callback that announces it; outlives the playback
  Playback(Session session, Step opening, const ReaderCallbacks& callbacks,
           std::atomic<ReaderState>* state, ReaderLog* log);
  ~Playback();
  Playback(const Playback&) = delete;
  Playback& operator=(const Playback&) = delete;

  /// Lets no callback begin that has not begun yet, as seen from a callback, cuts a
  /// pause short, and ends the work on pages. [any thread]
  void RequestStop();

  /// The same, and leaves no thread behind but the one that plays, for when the
  /// process or the library ends within a callback. [playing thread]
  void Abandon();

  /// Whether no callback begins any more; one may still be under way. [any thread]
  bool IsOver();

  /// The playback that is calling back on this thread; null on other threads.
  static Playback* OfThisThread();

 private:
  /// A step that is not to be had. Its text is static, for there may be no memory.
  struct Loss {
    const char* reason;
  };

  void Run();
  void PlayStep(MadeStep made);
  void TellOfLog();
  template <typename ActionType>
  void Perform(ActionType&& action);

  void Play(const SendEvent& event);
  void Play(const RaiseError& error);
  void Play(const Pause& pause);
  void Play(SendItem& item);
  void Play(SendBarcode& barcode);
  void Play(const WriteLine& line);
  void Play(const Loss& loss);

  void EnterState(const SendEvent& event);
  void PublishState();

  // What its threads run in, and what they call: let go of when they have ended.
  const LibraryHold ownCode;
  const LibraryHold calledCode;

  const std::shared_ptr<PageReaders> readers;
  LookAhead steps;
  Step opening;
  const ReaderCallbacks callbacks;
  std::atomic<ReaderState>* const state;
  ReaderLog* const log;

  ReaderState activity = ReaderState::Enabled;  ///< [playing thread]
  bool errorStands = false;                     ///< hides the activity [playing thread]

  std::mutex mutex;
  std::condition_variable stopRequested;
  bool over = false;  ///< guarded by mutex
  std::thread thread;
};

}  // namespace conduit
