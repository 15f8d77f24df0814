#pragma once

#include <ostream>
#include <string>

#include "hosting/RunListener.h"

namespace conduit {

struct JsonSinkOptions {
  std::int32_t logLevel = -1;  ///< the highest level of log lines to give; -1 for none
  bool data = false;           ///< whether to give the bytes of binary items
};

/// Tells a run to programs: one JSON object a line, written out at once, as
/// docs/json-output.md describes.
class JsonSink final : public RunListener {
 public:
  /// REQUIRES: `output` outlives the sink.
  JsonSink(std::ostream& output, JsonSinkOptions options);

  // They throw a std::runtime_error when `output` takes nothing any more.
  void OnRunBegan(const RunBegan& run) override;
  void OnCallReturned(const CallReturned& call) override;
  void OnWarning(const Warned& warning) override;
  void OnLogLine(const LogLine& line) override;
  void OnReaderLine(const ReaderLine& line) override;
  void OnItem(const ItemReceived& item) override;
  void OnEvent(const EventReceived& event) override;
  void OnDataBegan(const Document& document) override;
  void OnDataEnded(const Document& document) override;
  void OnScript(const ScriptActivated& script) override;
  void OnState(const StateReported& state) override;
  void OnError(const ErrorReported& error) override;
  void OnPagesCounted(const PagesCounted& pages) override;
  /// Writes the line also when there is no memory to make it of.
  void OnRunEnded(const RunEnded& end) override;

 private:
  std::ostream& output;
  const JsonSinkOptions options;
};

}  // namespace conduit
