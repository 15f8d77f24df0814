#include "console_host/TextSink.h"

#include <algorithm>

#include "console_host/ItemDescription.h"
#include "console_host/TextParts.h"
#include "console_host/WriteOut.h"
#include "hosting/Utf8.h"
#include "platform/FilePath.h"

namespace conduit {
namespace {

constexpr const char* Plain = "";
constexpr const char* Bold = "1";
constexpr const char* Dim = "2";
constexpr const char* Red = "1;31";
constexpr const char* Cyan = "36";

constexpr std::size_t KeywordWidth = 6;    // "script"
constexpr std::size_t ItemNameWidth = 36;  // "CODELINE_DATE_OF_BIRTH_STR_FORMATTED"

}  // namespace

TextSink::TextSink(std::ostream& output, TextSinkOptions options)
    : output(output), options(options) {}

void TextSink::OnRunBegan(const RunBegan& run) {
  const std::string module = Utf8FromPath(PathFromUtf8(run.module).filename());
  const std::string session = run.session.empty() ? "" : ", session " + EscapedPaths(run.session);
  Line(Bold, "run", Escaped(module) + session);
}

void TextSink::OnLogLine(const LogLine& line) {
  if (line.level > options.logLevel) {
    return;
  }
  Line(Dim, "log " + std::to_string(line.level),
       Escaped(line.tag) + ": " + EscapedPaths(line.message));
}

void TextSink::OnReaderLine(const ReaderLine& line) {
  Line(line.document.empty() ? Dim : Bold, "reader", EscapedPaths(line.text));
}

void TextSink::OnItem(const ItemReceived& item) {
  std::string name = Padded(item.name.empty() ? "(unnamed)" : Escaped(item.name), ItemNameWidth);
  std::string text = Described(item);
  if (item.feature) {
    text += " (feature " + Escaped(*item.feature) + (item.last ? ", last)" : ", more follow)");
  }
  if (item.answer != 0) {
    text += " (refused)";
  }
  Line(Plain, name, text);
}

void TextSink::OnEvent(const EventReceived& event) { Line(Cyan, "event", Escaped(event.name)); }

void TextSink::OnDataBegan(const Document& /*document*/) {
  Line(Bold, "begin", "");
  ++depth;
}

void TextSink::OnDataEnded(const Document& /*document*/) {
  depth = std::max(depth - 1, 0);
  Line(Bold, "end", "");
}

void TextSink::OnScript(const ScriptActivated& script) {
  Line(Cyan, "script", Escaped(script.name));
}

void TextSink::OnState(const StateReported& state) {
  if (state.repeated) {
    return;
  }
  Line(Plain, "state", state.text.empty() ? "(without a name)" : Escaped(state.text));
}

void TextSink::OnError(const ErrorReported& error) {
  // The reasons of a failure are told with it, as trouble.
  if (error.routine || error.again == SaidAgain::AsFailure) {
    return;
  }
  if (error.text.empty()) {
    Line(Plain, "error", "(none stands any more)");
  } else {
    Line(Red, "ERROR", EscapedPaths(error.text));
  }
}

void TextSink::OnPagesCounted(const PagesCounted& pages) { Line(Red, "pages", pages.Text()); }

void TextSink::OnRunEnded(const RunEnded& run) {
  depth = 0;
  switch (run.reason) {
    case EndReason::ReaderTerminated:
      Line(Bold, "stop", "the reader has terminated");
      break;
    case EndReason::Interrupted:
      Line(Bold, "stop", "interrupted");
      break;
    case EndReason::Failed:
      break;  // told as trouble
  }
}

void TextSink::Line(const char* style, const std::string& keyword, const std::string& text) {
  std::string line(static_cast<std::size_t>(depth) * 2, ' ');
  line += text.empty() ? keyword : Padded(keyword, KeywordWidth) + "  " + text;
  if (options.colour && *style != '\0') {
    line = std::string("\x1b[") + style + "m" + line + "\x1b[0m";
  }
  WriteOut(output, line + "\n");
}

}  // namespace conduit
