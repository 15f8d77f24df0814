#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include <conduit/IInputModuleHost.h>
#include <conduit/IModuleLogger.h>

namespace conduit {

/// Records everything that a module calls, in order: log lines, host calls and calls of the
/// scripted reader.
class Journal {
 public:
  void Write(std::string line);
  /// Returns the lines written since the last Take.
  std::vector<std::string> Take();

 private:
  std::mutex mutex;
  std::vector<std::string> lines;
};

/// Escapes bytes that are not printable as \xNN, so that the text fits one line.
std::string Escape(std::string_view bytes);

class RecordingLogger final : public IModuleLogger {
 public:
  explicit RecordingLogger(Journal& journal) : journal(journal) {}
  void Log(std::int32_t level, const char* tag, const char* message) override;

 private:
  Journal& journal;
};

/// Writes each call as a line: "SendData CODELINE_SEX 4 1 'F' last".
class RecordingHost final : public IInputModuleHost {
 public:
  explicit RecordingHost(Journal& journal) : journal(journal) {}

  std::int32_t SendData(const char* name, ItemType itemType, std::int32_t length, const void* data,
                        IStringMap* properties, bool last) override;
  void SendEvent(const char* name) override;
  void BeginData() override;
  void EndData() override;
  std::int32_t SetActiveScript(const char* name) override;
  void ReportState(const char* text) override;
  void ReportError(const char* text) override;

  std::string stopAt;                           ///< the item to answer with StopRecord
  std::function<void()> onStop = [] {};         ///< called at that item
  std::int32_t otherAnswer = 0;                 ///< the answer to every other item
  std::function<void()> onScript = [] {};       ///< called at every script
  std::string failingScript;                    ///< the script to answer with 7
  std::atomic<const void*> lastData = nullptr;  ///< the pointer of the last item

 private:
  Journal& journal;
};

}  // namespace conduit
