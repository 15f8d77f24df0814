#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>

#include "console_host/DocumentSummary.h"
#include "console_host/ReplacedFile.h"
#include "console_host/report/ReportPage.h"
#include "hosting/RunListener.h"

namespace conduit {

/// How large a page may get that a browser still opens at once.
struct ReportLimits {
  std::size_t picture = 16UL << 20;   ///< bytes of one picture
  std::size_t pictures = 64UL << 20;  ///< bytes of all pictures
  std::size_t text = 20000;           ///< bytes of one value
  std::size_t section = 4UL << 20;    ///< bytes of a section's rows; it is continued in the next
  int timelines = 1000;  ///< sections that have theirs whether or not there are problems
  int entries = 1000;    ///< of the overview, and of the list of problems
};

/// Tells a run as a page of HTML: self-contained, without scripts, for screen and
/// print. Each document is written when it is complete, into a file beside the page, so
/// that a run that breaks off leaves what was seen; the page takes the place of an
/// earlier one when the run has ended, however it ended.
class ReportSink final : public RunListener {
 public:
  /// Throws a std::runtime_error that names the file and the reason when it
  /// cannot be written.
  explicit ReportSink(const std::filesystem::path& path, const ReportLimits& limits = {});

  // They throw a std::runtime_error when the page cannot be written.
  void OnRunBegan(const RunBegan& began) override;
  void OnCallReturned(const CallReturned& call) override;
  void OnWarning(const Warned& warning) override;
  void OnLogLine(const LogLine& line) override;
  void OnReaderLine(const ReaderLine& line) override;
  void OnItem(const ItemReceived& item) override;
  void OnEvent(const EventReceived& event) override;
  void OnDocumentBegan(const Document& document) override;
  void OnDocumentEnded(const Document& document) override;
  void OnDataBegan(const Document& document) override;
  void OnDataEnded(const Document& document) override;
  void OnScript(const ScriptActivated& script) override;
  void OnState(const StateReported& state) override;
  void OnError(const ErrorReported& error) override;
  void OnPagesCounted(const PagesCounted& pages) override;
  void OnRunEnded(const RunEnded& end) override;

 private:
  /// A row of the timeline, with the log lines since the last one beside it.
  void AddStep(const char* what, const std::string& text, bool problem = false);
  void AddProblem(const std::string& text);

  void AddPicture(const ItemReceived& item);
  void AddBarcode(const ItemReceived& item);
  std::string Value(const ItemReceived& item) const;

  void OpenSection(const std::string& title);
  void CloseSection();
  std::chrono::milliseconds Age() const;

  const ReportLimits limits;
  ReplacedFile file;
  const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();

  ReportSummary run;
  ReportSection section;
  DocumentSummary person;
  std::string source;      ///< of the document that is open
  std::string pendingLog;  ///< markup of lines: a module logs what it is about to do
  std::size_t pictureBytes = 0;
  int pictures = 0;
  int steps = 0;
  int sections = 0;
};

}  // namespace conduit
