#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "interfaces/ItemType.h"

namespace conduit {

/// What happens in a run, as values that own their bytes: the lent pointers of
/// the module's calls are long gone when a report is written. Texts are the
/// module's bytes, whatever they hold.

struct RunBegan {
  std::string module;   ///< the library's file
  std::string session;  ///< the session's file; empty when none was named
};

/// The host calls the module. What the module logs or reports from here to the
/// CallReturned belongs to this call, unless a reader thread is already at work.
struct CallBegan {
  std::string name;  ///< "SetParameter LogLevel=2"
};

struct CallReturned {
  std::string failure;  ///< what it means for the user when the result is not 0
  std::int32_t result;
  std::vector<std::string> reasons;  ///< of a failure: what the module said meanwhile
};

/// What the host has doubts about, though it goes on.
struct Warned {
  std::string message;
};

struct LogLine {
  std::int32_t level;
  std::string tag;
  std::string message;
};

/// What the reader library wrote into its own log before what follows.
struct ReaderLine {
  std::optional<std::int32_t> level;  ///< none: a log of another form
  std::string text;
  std::string document;  ///< where the line says so: what the document comes from
};

struct ItemReceived {
  std::string name;
  ItemType type;
  std::int32_t length;              ///< as the module gave it
  std::optional<std::string> data;  ///< none: bytes were announced but not given
  std::optional<std::string> feature;
  bool last;
  std::int32_t answer;
};

struct EventReceived {
  std::string name;
};

struct DataBegan {};

struct DataEnded {};

struct ScriptActivated {
  std::string name;
};

struct StateReported {
  std::string text;
};

struct ErrorReported {
  std::string text;  ///< empty: no error stands any more
  bool routine;      ///< an empty text while no error stood, as every event brings one
};

/// Documents that gave nothing because of an error, after a run with such.
struct PagesCounted {
  int unread;
  int all;
};

/// The host has waited a moment: several times a second while the reader runs.
struct TimePassed {};

enum class EndReason { ReaderTerminated, Interrupted, Failed };

struct RunEnded {
  EndReason reason;
  std::string message;  ///< of a failure; empty when a CallReturned has told it
};

using Happening = std::variant<RunBegan, CallBegan, CallReturned, Warned, LogLine, ReaderLine,
                               ItemReceived, EventReceived, DataBegan, DataEnded, ScriptActivated,
                               StateReported, ErrorReported, PagesCounted, TimePassed, RunEnded>;

/// Takes in what happens in a run. HostRecorder hands everything to one sink
/// after the other under its lock, so a sink needs none of its own. One that
/// cannot go on throws.
class ISink {
 public:
  virtual ~ISink() = default;

  virtual void Receive(const Happening& happening) = 0;
};

}  // namespace conduit
