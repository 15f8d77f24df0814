#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

#include "tests/virtual_reader/ReaderSession.h"
#include <conduit/ReaderCodelineData.h>
#include <conduit/ReaderLogLine.h>

namespace conduit {
namespace {

constexpr std::int32_t EveryPart = -1;

/// The lines without their times.
std::vector<std::string> Lines(const std::string& log) {
  const std::string time = "YYYY-MM-DDThh:mm:ss.mmmZ ";
  std::vector<std::string> lines;
  std::istringstream stream(log);
  for (std::string line; std::getline(stream, line);) {
    EXPECT_TRUE(line.size() > time.size() && line[10] == 'T' && line[23] == 'Z') << line;
    lines.push_back(line.substr(std::min(line.size(), time.size())));
  }
  return lines;
}

TEST(ReaderLog, WritesWhatTheLevelAdmits) {
  ReaderSession session(R"({"steps": [{"error": "two\nlines"}, {"pause": 1}, {"document": {
      "codeline": ["P<UTOERIKSSON<<ANNA<MARIA<<<<<<<<<<<<<<<<<<<",
                   "L898902C30UTO7408122F1204159ZE184226B<<<<<10"]}}]})");
  const std::vector<std::string> lines = {
      "1 note playing the session " + (session.folder / "session.json").string(),
      "4 note pause of 50 ms",
      "2 note event DEVICE_CONNECTED, state Enabled",
      R"(2 note error: two\x0alines)",
      "4 note pause of 1 ms",
      "1 document step 3",
      "1 warning step 3, document.codeline: the check digit of the document number is '0', by "
      "the codeline it would be '6'",
      "1 warning step 3, document.codeline: the check digit of the whole codeline is '0', by the "
      "codeline it would be '8'",
      "2 note event DOC_ON_WINDOW, state Error",
      "2 note event START_OF_DOCUMENT_DATA, state Error",
      "3 note item CODELINE (0), 89 bytes",
      "3 note item record (1), " + std::to_string(sizeof(ReaderCodelineData)) + " bytes",
      "2 note event END_OF_DOCUMENT_DATA, state Error",
      "2 note event DOC_REMOVED, state Error",
      "2 note event DEVICE_DISCONNECTED, state Terminated",
      "1 note session ended",
  };
  for (int level = 0; level <= 5; ++level) {
    const std::string file = "log" + std::to_string(level);
    ASSERT_EQ(HaldenReader_EnableLogging(true, level, EveryPart, session.NameOf(file).c_str()), 0);
    session.PlayUntil();
    HaldenReader_Shutdown();
    HaldenReader_EnableLogging(false, 0, 0, nullptr);
    std::vector<std::string> wanted;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(wanted),
                 [level](const std::string& line) { return line[0] - '0' <= level; });
    EXPECT_EQ(Lines(session.Read(file)), wanted) << "level " << level;
  }
}

TEST(ReaderLogLine, BringsAnyBytesBackAndStaysOneLine) {
  const std::string bytes("\\x0aA\n\x01\x7f\xff");
  const std::size_t count = bytes.size() * bytes.size() * bytes.size() * bytes.size();
  for (std::size_t number = 0; number < count; ++number) {
    std::string text;
    for (std::size_t rest = number, i = 0; i < 4; ++i, rest /= bytes.size()) {
      text += bytes[rest % bytes.size()];
    }
    std::string line;
    WriteReaderLogLine(line, "2024-05-01T09:30:00.120Z", 1, ReaderLogKind::Warning,
                       {text.substr(0, 2), text.substr(2)});
    ASSERT_EQ(line.find('\n'), line.size() - 1);
    const auto parsed = ParseReaderLogLine(line.substr(0, line.size() - 1));
    ASSERT_TRUE(parsed) << line;
    EXPECT_EQ(parsed->text, text) << line;
    EXPECT_EQ(parsed->kind, ReaderLogKind::Warning);
  }
  std::string line;
  WriteReaderLogLine(line, "2024-05-01T09:30:00.120Z", 1, ReaderLogKind::Document,
                     {"C:\\scans\\a.png"});
  EXPECT_EQ(line, "2024-05-01T09:30:00.120Z 1 document C:\\scans\\a.png\n");
}

TEST(ReaderLogLine, HasNoStructureInAnotherForm) {
  EXPECT_EQ(ParseReaderLogLine("2024-05-01T09:30:00.120Z 1 note ")->text, "");
  EXPECT_EQ(ParseReaderLogLine("2024-05-01T09:30:00.120Z 1 note a\\x4")->text, "a\\x4");
  for (const char* const line :
       {"", "document a.png", "2024-05-01T09:30:00.120Z", "2024-05-01T09:30:00.120Z 1 ",
        "2024-05-01T09:30:00.120Z 1 note", "2024-05-01T09:30:00.120Z 1 warning: a",
        "2024-05-01T09:30:00.120Z 1 documents a", "2024-05-01T09:30:00.120Z x note a",
        "2024-05-01 09:30:00.120Z 1 note a"}) {
    EXPECT_FALSE(ParseReaderLogLine(line)) << line;
  }
}

TEST(ReaderLog, AppendsUnderAnyNameAndKeepsToItsMask) {
  ReaderSession session("no JSON");
  const std::string file = session.NameOf("l\xC3\xB6g");
  for (const std::int32_t mask : {EveryPart, 0, 1}) {
    ASSERT_EQ(HaldenReader_EnableLogging(true, 5, mask, file.c_str()), 0);
    session.Start();
  }
  HaldenReader_EnableLogging(false, 0, 0, nullptr);
  session.Start();
  EXPECT_EQ(Lines(session.Read("l\xC3\xB6g")).size(), 2U);
}

TEST(ReaderLog, RefusesAFileThatCannotBeOpenedAndKeepsTheOneBefore) {
  ReaderSession session("no JSON");
  const std::string good = session.NameOf("log");
  ASSERT_EQ(HaldenReader_EnableLogging(true, 0, EveryPart, good.c_str()), 0);
  const std::string missing = session.NameOf("no/log");
  const std::string folder = session.NameOf("");
  for (const char* file :
       {static_cast<const char*>(nullptr), "", folder.c_str(), missing.c_str()}) {
    EXPECT_EQ(HaldenReader_EnableLogging(true, 0, EveryPart, file),
              Code(ReaderResult::LogNotOpened));
  }
  for (const std::int32_t level : {-1, 6}) {
    EXPECT_EQ(HaldenReader_EnableLogging(true, level, EveryPart, good.c_str()),
              Code(ReaderResult::LogLevelInvalid));
  }
  session.Start();
  HaldenReader_EnableLogging(false, 0, 0, nullptr);
  EXPECT_THAT(Lines(session.Read("log")), testing::ElementsAre(testing::HasSubstr("not JSON")));
}

TEST(ReaderLog, TellsTheHostOnceOfAFileThatCannotBeOpened) {
  ReaderSession session(R"({"steps": []})");
  const std::string missing = session.NameOf("no/log");
  HaldenReader_EnableLogging(true, 1, EveryPart, missing.c_str());
  const std::string error =
      "error: the log file \"" + missing + "\" cannot be written: No such file or directory Error";
  EXPECT_THAT(session.PlayUntil(), testing::ElementsAre("DEVICE_CONNECTED Enabled", error,
                                                        "READER_ERROR_RESOLVED Enabled",
                                                        "DEVICE_DISCONNECTED Terminated"));
  HaldenReader_Shutdown();
  EXPECT_EQ(session.PlayUntil().size(), 2U);
  HaldenReader_EnableLogging(true, 1, EveryPart, missing.c_str());
  session.Write("session.json", "no JSON");
  HaldenReader_Shutdown();
  session.Forget();
  session.Start();
  EXPECT_THAT(session.Calls(), testing::ElementsAre(error, testing::HasSubstr("not JSON")));
}

}  // namespace
}  // namespace conduit
