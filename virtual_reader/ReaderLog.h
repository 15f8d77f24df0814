#pragma once

#include <cstdint>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/AppendedFile.h"
#include "virtual_reader/ReaderResult.h"
#include <conduit/ReaderLogLine.h>

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

  /// Closes the log and gives its memory back: it is never destroyed.
  void Release();

  /// Why lines are missing from the log, once for each time that it cannot be written: the
  /// last Open was refused, or a line was lost. Empty when there is nothing to tell.
  /// [allocates; nothing is forgotten when there is no memory]
  std::string TakeTrouble() noexcept;

  /// Writes one line: the time (UTC), the level, the kind, the text, which is given in
  /// parts. Allocates nothing, and neither waits nor fails: a line that cannot be written is
  /// counted, and the next one that can be is preceded by the number of those lost.
  void Write(std::int32_t level, ReaderLogKind kind, std::initializer_list<std::string_view> texts);
  void Write(std::int32_t level, std::string_view note) {
    Write(level, ReaderLogKind::Note, {note});
  }

 private:
  std::mutex mutex;
  AppendedFile output;
  std::int32_t highestLevel = 0;
  std::int64_t lostLines = 0;  ///< since a line was written

  // What is to be told: of this file, that it was not opened or why it cannot be written.
  std::string name;
  std::string refusedName;
  std::string refusal;
  std::error_code shortage;
};

}  // namespace conduit
