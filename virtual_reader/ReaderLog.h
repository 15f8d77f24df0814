#pragma once

#include <cstdint>
#include <fstream>
#include <mutex>
#include <string>
#include <string_view>

#include "virtual_reader/ReaderResult.h"

namespace conduit {

// The levels of the log: a line is written when its level is not above the one
// that the caller enabled.
inline constexpr std::int32_t LogFailures = 0;   ///< refusals, and callbacks that threw
inline constexpr std::int32_t LogLifecycle = 1;  ///< start and end; doubts about a session
inline constexpr std::int32_t LogEvents = 2;     ///< events, raised errors, states
inline constexpr std::int32_t LogItems = 3;      ///< the kind and size of each item
inline constexpr std::int32_t LogPauses = 4;
inline constexpr std::int32_t LogEverything = 5;

/// The log file of the reader. It never holds what a document says, only that
/// it was sent. [any thread]
class ReaderLog {
 public:
  /// Appends to `file` from now on. A refusal leaves the log as it was.
  /// @param mask  bits for the parts of the library; with none set, nothing is written
  ReaderResult Open(std::int32_t level, std::int32_t mask, const char* file);

  void Close();

  /// Why the file of the last Open cannot be written to, once; empty when it can.
  std::string TakeRefusal();

  /// Writes one line: the time (UTC), the level, the text.
  void Write(std::int32_t level, std::string_view text);

 private:
  std::mutex mutex;
  std::ofstream stream;
  std::int32_t highestLevel = 0;
  std::string refusal;
};

}  // namespace conduit
