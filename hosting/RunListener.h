#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hosting/Document.h"
#include <conduit/ItemType.h>

namespace conduit {

/// What happens in a run, as values that own their bytes: the lent pointers of
/// the module's calls are long gone when a report is written. Texts are the
/// module's bytes, whatever they hold.

struct RunBegan {
  std::string module;   ///< the library's file
  std::string session;  ///< the session's file; empty when none was named
};

/// The host called the module.
struct CallReturned {
  std::string name;     ///< "SetParameter LogLevel=2"
  std::string failure;  ///< what it means for the user when the result is not 0
  std::int32_t result;
  std::vector<std::string> reasons;  ///< of a failure: what the module said meanwhile
};

/// What the host has doubts about, though it goes on.
struct Warned {
  std::string message;
};

/// Where else a text comes that the module says.
enum class SaidAgain {
  Nowhere,
  AsError,    ///< in the reader error that follows
  AsFailure,  ///< among the reasons of the call that fails
};

struct LogLine {
  std::int32_t level;
  std::string tag;
  std::string message;
  SaidAgain again;  ///< of a failure
};

/// What the reader library wrote into its own log before what follows.
struct ReaderLine {
  std::optional<std::int32_t> level;  ///< none: a log of another form
  std::string text;                   ///< as people read it: "warning: a.png: odd"
  std::string document;      ///< where the line heads a document: what it comes from, "a.png"
  std::string warning = {};  ///< where the line is one: its text, "a.png: odd"
  std::optional<Document> belongsTo = {};
};

struct ItemReceived {
  std::string name;
  ItemType type;
  std::int32_t length;              ///< as the module gave it
  std::optional<std::string> data;  ///< none: bytes were announced but not given
  std::optional<std::string> feature;
  bool last;
  std::int32_t answer;
  Document belongsTo = {};
};

struct EventReceived {
  std::string name;
};

struct ScriptActivated {
  std::string name;
};

struct StateReported {
  std::string text;
  bool repeated;  ///< the call under way has brought the same
};

struct ErrorReported {
  std::string text;  ///< empty: no error stands any more
  bool routine;      ///< an empty text while no error stood, as every event brings one
  SaidAgain again;
  std::optional<Document> belongsTo = {};
};

/// Why a run failed that had no memory left. Short enough for a std::string to hold it
/// without memory of its own.
inline constexpr const char* OutOfMemory = "out of memory";

enum class EndReason { ReaderTerminated, Interrupted, Failed };

struct RunEnded {
  EndReason reason;
  std::string message;  ///< of a failure; empty when a CallReturned has told it
};

/// Is told what happens in a run, in its order. HostRecorder calls one listener after
/// the other under its lock, so that a listener needs none of its own, on whatever
/// thread it happens. A listener that cannot go on throws, and is told nothing more.
class RunListener {
 public:
  virtual ~RunListener() = default;

  /// Comes before each of the operations below but OnTimePassed.
  virtual void OnAnything() {}

  virtual void OnRunBegan(const RunBegan& /*run*/) {}
  virtual void OnCallReturned(const CallReturned& /*call*/) {}
  virtual void OnWarning(const Warned& /*warning*/) {}
  virtual void OnLogLine(const LogLine& /*line*/) {}
  virtual void OnReaderLine(const ReaderLine& /*line*/) {}
  virtual void OnItem(const ItemReceived& /*item*/) {}
  virtual void OnEvent(const EventReceived& /*event*/) {}
  /// Around all that belongs to a document, with what is known of it by then.
  virtual void OnDocumentBegan(const Document& /*document*/) {}
  virtual void OnDocumentEnded(const Document& /*document*/) {}
  /// Around the items of the document.
  virtual void OnDataBegan(const Document& /*document*/) {}
  virtual void OnDataEnded(const Document& /*document*/) {}
  virtual void OnScript(const ScriptActivated& /*script*/) {}
  virtual void OnState(const StateReported& /*state*/) {}
  virtual void OnError(const ErrorReported& /*error*/) {}
  /// After a run with documents that are Unread.
  virtual void OnPagesCounted(const PagesCounted& /*pages*/) {}
  virtual void OnRunEnded(const RunEnded& /*end*/) {}

  /// The host has waited a moment: several times a second while the reader runs.
  virtual void OnTimePassed() {}
};

}  // namespace conduit
