#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hosting/EndOfSession.h"
#include "hosting/HostRecorder.h"

namespace conduit {

struct PlayOptions {
  std::string session;  ///< empty: the environment or a real reader decides
  bool watch = false;
  std::string module;
  std::vector<std::string> settings;   ///< NAME=VALUE
  std::vector<std::string> reactions;  ///< EVENT=SCRIPT
  std::int32_t logLevel = -1;
};

struct PlayOutcome {
  RunEnded ended;
  bool complete;  ///< no page was Unread, and no line of the reader's log is missing
};

/// Runs a module until its reader ends, a listener fails or the user interrupts, and tells
/// the recorder's listeners of it from its begin to its end.
/// @param end  one of those listeners
PlayOutcome Play(const PlayOptions& options, HostRecorder& recorder, EndOfSession& end);

}  // namespace conduit
