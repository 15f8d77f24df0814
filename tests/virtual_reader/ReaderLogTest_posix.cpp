#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tests/virtual_reader/ReaderSession.h"
#include "virtual_reader/ReaderLog.h"

namespace conduit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Level, kind and text of each line, all of which are whole.
std::vector<std::string> Lines(const std::string& log) {
  std::vector<std::string> lines;
  std::istringstream stream(log);
  for (std::string line; std::getline(stream, line);) {
    const std::optional<ReaderLogLine> parsed = ParseReaderLogLine(line);
    EXPECT_TRUE(parsed && !stream.eof()) << line;
    if (parsed) {
      lines.push_back(std::to_string(parsed->level) + " " +
                      std::string(ReaderLogKindNames[static_cast<std::size_t>(parsed->kind)]) +
                      " " + parsed->text);
    }
  }
  return lines;
}

/// No file of this process may grow beyond so many bytes, as if the disk were full then.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(std::uintmax_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limit = {bytes, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before); }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before = {};
};

TEST(ReaderLog, HoldsWholeLinesAndSaysHowManyItLost) {
  const ReaderSession session;
  ReaderLog log;
  const std::string file = session.NameOf("log");
  ASSERT_EQ(log.Open(1, -1, file.c_str()), ReaderResult::Success);
  log.Write(1, "first");
  const std::string longText(10000, 'a');  // longer than what is written in one piece
  std::vector<std::string> lines = {"1 note first"};
  for (int shortage = 0; shortage < 2; ++shortage) {
    {
      const FileSizeLimit limit(std::filesystem::file_size(file) + 5000);
      for (int line = 0; line < 3; ++line) {
        log.Write(1, longText);
      }
    }
    EXPECT_THAT(log.TakeTrouble(), AllOf(HasSubstr(file), HasSubstr(": File too large")));
    EXPECT_EQ(log.TakeTrouble(), "");
    log.Write(1, ReaderLogKind::Document, {"a", "\nb", longText});
    lines.emplace_back(
        "0 warning lines of this log that could not be written and are missing here: 3");
    lines.push_back("1 document a\nb" + longText);
  }
  EXPECT_EQ(Lines(session.Read("log")), lines);
}

TEST(ReaderLog, WaitsForNobodyWhoReadsAPipe) {
  const ReaderSession session;
  const std::string pipe = session.NameOf("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), S_IRWXU), 0);
  ReaderLog log;
  EXPECT_EQ(log.Open(1, -1, pipe.c_str()), ReaderResult::LogNotOpened);
  EXPECT_THAT(log.TakeTrouble(), HasSubstr("it is a pipe that nobody reads"));

  const int end = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_EQ(log.Open(1, -1, pipe.c_str()), ReaderResult::Success);
  constexpr int written = 3000;
  for (int i = 0; i < written; ++i) {
    log.Write(1, std::string(100, 'a'));
  }
  EXPECT_THAT(log.TakeTrouble(), HasSubstr(pipe));
  const auto read = [end] {
    std::string all(1 << 20, '\0');
    const ssize_t size = ::read(end, all.data(), all.size());
    return all.substr(0, size > 0 ? static_cast<std::size_t>(size) : 0);
  };
  const std::size_t got = Lines(read()).size();
  EXPECT_GT(got, 0U);
  log.Write(1, "last");
  EXPECT_THAT(
      Lines(read()),
      ElementsAre(HasSubstr("missing here: " + std::to_string(written - got)), "1 note last"));
  // Whose reader has gone: no signal ends the process.
  close(end);
  log.Write(1, "nowhere");
  EXPECT_THAT(log.TakeTrouble(), HasSubstr("Broken pipe"));
}

TEST(ReaderLog, TellsTheHostOfAFullDiskOnce) {
  const char* const full = "/dev/full";
  if (!std::filesystem::exists(full)) {
    GTEST_SKIP() << "this system has no " << full;
  }
  ReaderSession session(R"({"steps": [{"swipe": ["%B1?"]}, {"pause": 1}]})");
  HaldenReader_EnableLogging(true, 1, -1, full);
  session.onData = [](ReaderDataType, std::int32_t, const void*) {};
  EXPECT_THAT(
      session.PlayUntil(),
      ElementsAre("DEVICE_CONNECTED Enabled",
                  "error: the log file \"/dev/full\" cannot be written: No space left on device "
                  "Error",
                  "READER_ERROR_RESOLVED Enabled", "START_OF_SWIPE_DATA Reading",
                  "END_OF_SWIPE_DATA Enabled", "DEVICE_DISCONNECTED Terminated"));
  HaldenReader_EnableLogging(false, 0, 0, nullptr);
}

/// As on a disk, where Linux takes every byte but two.
TEST(ReaderLog, TakesNoFileNameForALine) {
  ReaderSession session;
  std::filesystem::remove(session.folder / "session.json");
  ReaderSession::Name(session.folder);
  const std::string names[] = {
      "a\n2024-05-01T09:30:00.120Z 1 document evil.png",
      "document 1.png",
      "warning \\x41\x01\x7f.png",
  };
  for (const std::string& name : names) {
    std::filesystem::copy_file(PAGES_FOLDER "/none.png", session.PathOf(name));
  }
  HaldenReader_EnableLogging(true, 1, -1, session.NameOf("log.txt").c_str());
  session.onData = [](ReaderDataType, std::int32_t, const void*) {};
  session.PlayUntil();
  HaldenReader_EnableLogging(false, 0, 0, nullptr);
  std::vector<std::string> documents = Lines(session.Read("log.txt"));
  std::erase_if(documents, [](const auto& line) { return !line.starts_with("1 document "); });
  EXPECT_THAT(documents, ElementsAre("1 document " + names[0], "1 document " + names[1],
                                     "1 document " + names[2]));
}

}  // namespace
}  // namespace conduit
