#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "console_host/report/ReportPage.h"
#include "hosting/Happening.h"

namespace conduit {

/// How large a page may get that a browser still opens at once.
struct ReportLimits {
  std::size_t picture = 16UL << 20;    ///< bytes of one picture
  std::size_t pictures = 128UL << 20;  ///< bytes of all pictures
  std::size_t text = 20000;            ///< bytes of one value
};

/// Tells a run as a page of HTML: self-contained, without scripts, for screen and
/// print. The page is written when the run ends, however it ends, and takes the place
/// of an earlier one then.
class ReportSink final : public ISink {
 public:
  /// Throws a std::runtime_error that names the file and the reason when it
  /// cannot be written.
  explicit ReportSink(const std::filesystem::path& file, const ReportLimits& limits = {});

  /// Throws a std::runtime_error when the finished page cannot be written.
  void Receive(const Happening& happening) override;

 private:
  void Take(const RunBegan& run);
  void Take(const CallBegan& call);
  void Take(const CallReturned& call);
  void Take(const Warned& warning);
  void Take(const LogLine& line);
  void Take(const ReaderLine& line);
  void Take(const ItemReceived& item);
  void Take(const EventReceived& event);
  void Take(const DataBegan& data);
  void Take(const DataEnded& data);
  void Take(const ScriptActivated& script);
  void Take(const StateReported& state);
  void Take(const ErrorReported& error);
  void Take(const PagesCounted& pages);
  void Take(const TimePassed& time);
  void Take(const RunEnded& end);

  /// A row of the timeline, with the log lines since the last one beside it.
  void AddStep(const char* what, const std::string& text, bool problem = false);
  void AddProblem(const std::string& text);
  std::string TakeLog(const std::string& text);

  void AddPicture(const ItemReceived& item);
  void AddBarcode(const ItemReceived& item);
  std::string Value(const ItemReceived& item) const;

  void OpenSection(const std::string& title);
  void CloseSection();
  std::chrono::milliseconds Age() const;

  const std::filesystem::path file;
  const std::filesystem::path unfinished;  ///< beside it, so that an earlier one stays until then
  const ReportLimits limits;
  std::ofstream output;
  const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();

  ReportContents contents;
  ReportSection section;
  std::string document;          ///< what the one laid down comes from, if the reader says so
  std::string callUnderWay;      ///< the host's call of the module
  std::vector<LogLine> pending;  ///< a module logs what it is about to do
  std::size_t pictureBytes = 0;
  int steps = 0;
};

}  // namespace conduit
