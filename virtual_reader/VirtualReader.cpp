#include "virtual_reader/VirtualReader.h"

#include <exception>
#include <string>

#include "platform/FilePath.h"
#include "platform/Process.h"
#include "platform/SessionLocation.h"
#include "virtual_reader/session/Session.h"

namespace conduit {

ReaderResult VirtualReader::EnableLogging(bool enable, std::int32_t level, std::int32_t mask,
                                          const char* file) {
  if (enable) {
    return log.Open(level, mask, file);
  }
  log.Close();
  return ReaderResult::Success;
}

ReaderResult VirtualReader::Initialise(const ReaderCallbacks& callbacks) {
  ReaderResult result = ReaderResult::Success;
  std::string reason;
  if (Playback::OfThisThread() != nullptr) {
    log.Write(LogFailures, "not started: called from one of the reader's own callbacks");
    return ReaderResult::AlreadyRunning;
  }
  {
    const std::lock_guard lock(lifecycle);
    ForgetAfterFork();
    if (playback != nullptr && !playback->IsOver()) {
      log.Write(LogFailures, "not started: a session is being played already");
      return ReaderResult::AlreadyRunning;
    }
    try {
      Start(callbacks);
      return ReaderResult::Success;
    } catch (const SessionError& error) {
      result = error.result;
      reason = error.what();
    } catch (const std::exception& error) {
      result = ReaderResult::Failed;
      reason = std::string("the session cannot be played: ") + error.what();
    }
    state = ReaderState::Error;
  }
  // Without the lock: the callback may call Shutdown.
  ReportRefusal(reason, callbacks);
  return result;
}

void VirtualReader::Start(const ReaderCallbacks& callbacks) {
  playback.reset();
  state = ReaderState::NotInitialised;
  const std::filesystem::path file = SessionLocation();
  if (file.empty()) {
    throw SessionError(ReaderResult::NoSession, std::string("the environment variable ") +
                                                    SessionVariable +
                                                    " does not name a session to play");
  }
  Session session = ReadSession(file);
  log.Write(LogLifecycle, "playing the session " + Utf8FromPath(file));
  for (const std::string& remark : session.remarks) {
    log.Write(LogLifecycle, remark);
  }
  Step opening;
  if (const std::string refusal = log.TakeTrouble(); !refusal.empty()) {
    opening = {RaiseError{refusal}, SendEvent{ReaderEventCode::ReaderErrorResolved, {}}};
  }
  state = ReaderState::Enabled;
  process = ProcessNumber();
  playback =
      std::make_unique<Playback>(std::move(session), std::move(opening), callbacks, &state, &log);
}

void VirtualReader::ReportRefusal(const std::string& reason, const ReaderCallbacks& callbacks) {
  log.Write(LogFailures, "not started: " + reason);
  for (const std::string& text : {log.TakeTrouble(), reason}) {
    if (callbacks.error == nullptr || text.empty()) {
      continue;
    }
    try {
      callbacks.error(nullptr, reinterpret_cast<const ReaderErrorInfo*>(text.c_str()),
                      callbacks.context);
    } catch (...) {
      log.Write(LogFailures, "exception out of the error callback");
    }
  }
}

void VirtualReader::Shutdown() {
  if (Playback* const own = Playback::OfThisThread(); own != nullptr) {
    own->RequestStop();
    state = ReaderState::NotInitialised;
    return;
  }
  const std::lock_guard lock(lifecycle);
  ForgetAfterFork();
  playback.reset();
  state = ReaderState::NotInitialised;
}

/// A fork of the host has neither the threads of the playback, which cannot be waited for,
/// nor a right to its page processes.
void VirtualReader::ForgetAfterFork() {
  if (process != ProcessNumber()) {
    static_cast<void>(playback.release());
  }
}

void VirtualReader::Release() {
  if (Playback::OfThisThread() != nullptr) {
    // The process is being ended from within a callback: the thread that runs
    // this cannot be waited for, and does not come back to play on.
    Playback::OfThisThread()->Abandon();
    return;
  }
  Shutdown();
  log.Release();
}

}  // namespace conduit
