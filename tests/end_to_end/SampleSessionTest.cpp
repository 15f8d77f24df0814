#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "hosting/LoadedModule.h"
#include "platform/Environment.h"
#include "tests/support/Journal.h"

namespace conduit {
namespace {

using Lines = std::vector<std::string>;

/// Delays the reader's calls until Initialise has returned, so that its state report has a
/// fixed place in the journal, and signals the end of the session.
class OrderedHost final : public IInputModuleHost {
 public:
  explicit OrderedHost(Journal& journal) : recorder(journal) {}

  std::int32_t SendData(const char* name, ItemType itemType, std::int32_t length, const void* data,
                        IStringMap* properties, bool last) override {
    return recorder.SendData(name, itemType, length, data, properties, last);
  }
  void SendEvent(const char* name) override { recorder.SendEvent(name); }
  void BeginData() override { recorder.BeginData(); }
  void EndData() override { recorder.EndData(); }
  std::int32_t SetActiveScript(const char* name) override { return recorder.SetActiveScript(name); }
  void ReportError(const char* text) override {
    if (std::this_thread::get_id() != hostThread) {
      started.wait(false);
    }
    recorder.ReportError(text);
  }
  void ReportState(const char* text) override {
    recorder.ReportState(text);
    if (std::string(text) == "Terminated") {
      ended = true;
      ended.notify_all();
    }
  }

  std::atomic<bool> started = false;
  std::atomic<bool> ended = false;

 private:
  RecordingHost recorder;
  std::thread::id hostThread = std::this_thread::get_id();
};

/// Returns the recorded journal without comments, and without the barcodes found on pages
/// when this build does not search pages.
Lines ExpectedJournal() {
  Lines lines;
  bool expected = true;
  std::ifstream file(JOURNAL_FILE);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("# What was found")) {
      expected = SEARCHES_PAGES;
    } else if (line.starts_with("# End of what was found")) {
      expected = true;
    } else if (expected && !line.starts_with("#")) {
      lines.push_back(line);
    }
  }
  return lines;
}

/// Returns a new path in the temporary folder, distinct from those of other test runs.
std::filesystem::path NewPath(const std::u8string& name) {
  const std::string number = std::to_string(std::random_device()());
  return std::filesystem::path(testing::TempDir()) /
         (name + std::u8string(number.begin(), number.end()));
}

/// Plays a session through the built module and the virtual reader.
Lines Play(const std::filesystem::path& session) {
  SetEnvironment("HALDEN_READER_SESSION", session);
  Journal journal;
  RecordingLogger logger(journal);
  OrderedHost host(journal);
  LoadedModule module(MODULE_FILE, &logger);
  module->SetHost(&host);
  const std::string readerLog = NewPath(u8"sample_session.log").string();
  EXPECT_EQ(module->SetParameter("LogFileName", readerLog.c_str()), 0);
  EXPECT_EQ(module->SetParameter("DateOfBirthFormat", "%d.%m.%Y"), 0);
  EXPECT_EQ(module->AddCondition("ReceiveEvent", "DOC_ON_WINDOW"), 0);
  EXPECT_EQ(module->AddAction("ReceiveEvent", "DOC_ON_WINDOW", "SetActiveScript", "greet"), 0);
  journal.Take();
  const std::int32_t started = module->Initialise();
  EXPECT_EQ(started, 0);
  host.started = true;
  host.started.notify_all();
  if (started == 0) {
    host.ended.wait(false);
  }
  EXPECT_EQ(module->Shutdown(), 0);
  std::error_code stillOpen;  // on Windows the reader has the file open
  std::filesystem::remove(readerLog, stillOpen);
  return journal.Take();
}

void ExpectJournalOnFile(const Lines& actual) {
  const Lines expected = ExpectedJournal();
  for (std::size_t index = 0; index < std::max(actual.size(), expected.size()); ++index) {
    const std::string missing = "(no line)";
    ASSERT_EQ(index < actual.size() ? actual[index] : missing,
              index < expected.size() ? expected[index] : missing)
        << "line " << index + 1 << " of the journal";
  }
}

TEST(SampleSession, MatchesTheRecordedJournal) { ExpectJournalOnFile(Play(SESSION_FILE)); }

TEST(SampleSession, PlaysFromAFolderWithANonAsciiName) {
  const std::filesystem::path session = SESSION_FILE;
  const std::filesystem::path folder = NewPath(u8"Prüf stand Δ");
  std::filesystem::copy(session.parent_path(), folder, std::filesystem::copy_options::recursive);
  ExpectJournalOnFile(Play(folder / session.filename()));
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace conduit
