#pragma once

#include <ostream>
#include <string>

#include "hosting/RunListener.h"

namespace conduit {

struct TextSinkOptions {
  bool colour = false;
  std::int32_t logLevel = -1;  ///< the highest level shown; -1 for none
};

/// Shows a run to people: one line for each happening, written out at once, the
/// items of one document or swipe indented.
class TextSink final : public RunListener {
 public:
  /// REQUIRES: `output` outlives the sink.
  TextSink(std::ostream& output, TextSinkOptions options);

  // They throw a std::runtime_error when `output` takes nothing any more.
  void OnRunBegan(const RunBegan& run) override;
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
  void OnRunEnded(const RunEnded& run) override;

 private:
  void Line(const char* style, const std::string& keyword, const std::string& text);

  std::ostream& output;
  const TextSinkOptions options;
  int depth = 0;
};

}  // namespace conduit
