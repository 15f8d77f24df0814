#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "hosting/Happening.h"

namespace conduit {

struct TextSinkOptions {
  bool colour = false;
  std::int32_t logLevel = -1;  ///< the highest level shown; -1 for none
};

/// Shows a run to people: one line for each happening, written out at once, the
/// items of one document or swipe indented.
class TextSink final : public ISink {
 public:
  /// REQUIRES: `output` outlives the sink.
  TextSink(std::ostream& output, TextSinkOptions options);

  /// Throws a std::runtime_error when `output` takes nothing any more.
  void Receive(const Happening& happening) override;

 private:
  void Write(const Happening& happening);
  void Write(const RunBegan& run);
  void Write(const CallBegan& call);
  void Write(const CallReturned& call);
  void Write(const Warned& warning);
  void Write(const TimePassed& time);
  void Write(const LogLine& line);
  void Write(const ReaderLine& line);
  void Write(const ItemReceived& item);
  void Write(const EventReceived& event);
  void Write(const DataBegan& data);
  void Write(const DataEnded& data);
  void Write(const ScriptActivated& script);
  void Write(const StateReported& state);
  void Write(const ErrorReported& error);
  void Write(const PagesCounted& pages);
  void Write(const RunEnded& run);

  void Line(const char* style, const std::string& keyword, const std::string& text);
  bool Holds(const Happening& happening) const;
  void WriteHeld(bool withErrors);

  std::ostream& output;
  const TextSinkOptions options;
  int depth = 0;

  /// Errors and states from within a call. When the call fails its errors are
  /// the reasons, and the user is told them with the failure rather than twice.
  std::vector<Happening> held;
  bool callUnderWay = false;
};

}  // namespace conduit
