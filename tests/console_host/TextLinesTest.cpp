#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <new>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "console_host/ProgressLine.h"
#include "console_host/SaveSink.h"
#include "console_host/TableSink.h"
#include "console_host/TextSink.h"
#include "console_host/TroubleSink.h"
#include "console_host/report/ReportSink.h"
#include "hosting/DataFormat.h"
#include "hosting/DocumentTracker.h"
#include "hosting/HostRecorder.h"
#include "hosting/Utf8.h"
#include "platform/Digest.h"

using namespace std::string_literals;

namespace conduit {
namespace {

TEST(Escaped, LetsNothingReachTheTerminal) {
  struct Case {
    std::string text;
    std::string escaped;
  };
  const Case cases[] = {
      {"M\u00DCLLER \u65E5\U0001F600", "M\u00DCLLER \u65E5\U0001F600"},
      {"a\nb\r\tc", "a\\nb\\r\\tc"},
      {"\x1b[31m\x7f", "\\x1b[31m\\x7f"},
      {"a\0b"s, "a\\x00b"},
      {"C:\\new", "C:\\\\new"},
      {"\u009b31m", "\\u{9b}31m"},
      {"\u202Etxt\u202C\u2028", "\\u{202e}txt\\u{202c}\\u{2028}"},
      {"M\xDCLLER", "M\\xdcLLER"},
      {"\xC0\xAF", "\\xc0\\xaf"},                    // longer than it needs to be
      {"\xED\xA0\x80", "\\xed\\xa0\\x80"},           // half of a surrogate pair
      {"\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},  // beyond the last character
      {"\xE6\x97", "\\xe6\\x97"},                    // cut short
      {"\xE6z", "\\xe6z"},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(Escaped(one.text), one.escaped);
  }
}

TEST(Escaped, LeavesThePathsOfItsSystem) {
  const bool separates = std::filesystem::path::preferred_separator == '\\';
  EXPECT_EQ(EscapedPaths("C:\\\\a\\b\n"), separates ? "C:\\\\a\\b\\n" : "C:\\\\\\\\a\\\\b\\n");
}

TEST(DataFormat, KnowsImagesByTheirFirstBytes) {
  EXPECT_EQ(DataFormat("\x89PNG\r\n\x1a\n...."), "PNG");
  EXPECT_EQ(DataFormat("\0\0\0\x0CjP  \r\n\x87\n"s), "JP2");
  EXPECT_EQ(DataFormat("\x89PN"), "");
  EXPECT_EQ(DataFormat(""), "");
}

TEST(ReadsAsText, GoesByTheBytesOfABarcode) {
  EXPECT_TRUE(ReadsAsText(ItemTypeUnknown, "@\n\x1e\rANSI 636000"));
  EXPECT_FALSE(ReadsAsText(ItemTypeUnknown, "a\0b"s));
  EXPECT_FALSE(ReadsAsText(ItemTypeBarcodeFormat9, "\xff"));
  EXPECT_TRUE(ReadsAsText(ItemTypeText, "\xff"));
  EXPECT_FALSE(ReadsAsText(ItemTypeImage, "text"));
}

TEST(TextSink, ColoursWholeLinesAndNeverLeavesAColourOn) {
  std::ostringstream output;
  TextSink sink(output, {true, 1});
  sink.OnError({"jam\x1b[0m", false, SaidAgain::Nowhere});
  sink.OnLogLine({1, "A::B", "text", SaidAgain::Nowhere});
  sink.OnLogLine({2, "A::B", "more", SaidAgain::Nowhere});
  EXPECT_EQ(output.str(),
            "\x1b[1;31mERROR   jam\\x1b[0m\x1b[0m\n"
            "\x1b[2mlog 1   A::B: text\x1b[0m\n");
}

/// What a listener is told of what a module says, in a word each.
class Told final : public RunListener {
 public:
  void OnCallReturned(const CallReturned& call) override {
    words += "returned " + std::to_string(call.reasons.size()) + "\n";
  }
  void OnLogLine(const LogLine& line) override { Write(line.message, line.again); }
  void OnEvent(const EventReceived& event) override { words += event.name + "\n"; }
  void OnState(const StateReported& state) override {
    words += state.text + (state.repeated ? " repeated\n" : "\n");
  }
  void OnError(const ErrorReported& error) override { Write(error.text, error.again); }

  void Write(const std::string& text, SaidAgain again) {
    words += text + (again == SaidAgain::Nowhere     ? "\n"
                     : again == SaidAgain::AsFailure ? " as failure\n"
                                                     : " as error\n");
  }

  std::string words;
};

TEST(HostRecorder, SaysWhatComesTwice) {
  Told told;
  HostRecorder recorder({&told}, {});
  const auto sayJam = [&] {
    recorder.Log(0, "A::B", "Reader Error: jam");
    recorder.ReportError("jam");
    recorder.ReportState("Error");
    recorder.ReportState("Error");
  };
  recorder.Call("Initialise", "", [&] {
    sayJam();
    recorder.Log(2, "A::B", "trace");
    return 13;
  });
  EXPECT_EQ(std::exchange(told.words, ""),
            "Reader Error: jam as failure\njam as failure\nError\nError repeated\ntrace\n"
            "returned 1\n");
  sayJam();
  recorder.Log(0, "A::B", "other");
  recorder.SendEvent("A");
  EXPECT_EQ(std::exchange(told.words, ""),
            "Reader Error: jam as error\njam\nError\nError\nother\nA\n");
  // A reader that is faster than its start.
  recorder.Call("Initialise", "", [&] {
    recorder.ReportError("dirty");
    recorder.SendEvent("A");
    recorder.ReportState("Enabled");
    return 0;
  });
  EXPECT_EQ(std::exchange(told.words, ""), "dirty\nA\nEnabled\nreturned 0\n");
  // Nothing follows, and there is no end of it.
  for (int i = 0; i < 100'000; ++i) {
    recorder.Log(3, "", "");
  }
  EXPECT_GT(told.words.size(), 99'000U);
  recorder.PassTime();
  EXPECT_EQ(told.words.size(), 100'000U);
}

TEST(HostRecorder, LetsNoFailureIntoTheModuleAndTellsNothingBehindALoss) {
  class WithoutMemory final : public RunListener {
    void OnItem(const ItemReceived& /*item*/) override { throw std::bad_alloc(); }
  };
  WithoutMemory failing;
  Told told;
  HostRecorder recorder({&failing, &told}, {});
  recorder.SendEvent("A");
  EXPECT_FALSE(recorder.HasFailed());
  recorder.SendData("NAME", ItemTypeText, 1, "x", nullptr, true);
  EXPECT_EQ(recorder.Failures(), std::vector<std::string>{"out of memory"});
  EXPECT_FALSE(recorder.IsTold(failing));
  recorder.SendEvent("B");
  // What the host does itself is told to the end.
  EXPECT_EQ(recorder.Call("Shutdown", "", [] { return 13; }), 13);
  EXPECT_EQ(told.words, "A\nreturned 0\n");
  recorder.Recover();
  recorder.SendEvent("C");
  EXPECT_EQ(told.words, "A\nreturned 0\nC\n");
}

TEST(DocumentTracker, SaysWhereADocumentBeginsAndEnds) {
  struct Case {
    const char* signs;  ///< as below
    const char* told;   ///< "(" begins one; each ends with its kind, number and name
  };
  const Case cases[] = {
      {"NWBIER", "(page 1 a)"},
      {"WBIER WBIER", "(page 1 )(page 2 )"},
      {"NWXR NWBXIER", "(unread 0 a)(page 1 a)"},
      {"NXWR", "(page 0 a)"},  // an error from before it lay there
      {"BIE BIE WXR", "(swipe 1 )(swipe 2 )(unread 0 )"},
      {"BIE NWR", "(swipe 1 )(page 0 a)"},
      {"NBIE", "(swipe 1 a)"},
      {"NN", "(swipe 0 a)(swipe 0 a)"},
      {"WW", "(page 0 )(page 0 )"},  // nobody said that the first was taken away
      {"WBIEBIER", "(page 2 )"},     // one document, however often it gives data
      {"I BIE", "(swipe 0 )(swipe 1 )"},
      {"X E R", ""},
  };
  for (const Case& one : cases) {
    std::string told;
    DocumentTracker tracker([&](const Document& /*document*/) { told += "("; },
                            [&](const Document& document) {
                              constexpr const char* kinds[] = {"page", "swipe", "unread"};
                              told += std::string(kinds[static_cast<int>(document.Kind())]) + " " +
                                      std::to_string(document.number) + " " + document.source + ")";
                            });
    const std::map<char, void (DocumentTracker::*)()> meanings = {
        {'W', &DocumentTracker::LaidDown},  {'B', &DocumentTracker::DataBegan},
        {'I', &DocumentTracker::ItemCame},  {'E', &DocumentTracker::DataEnded},
        {'X', &DocumentTracker::ErrorCame}, {'R', &DocumentTracker::End},
    };
    for (const char sign : std::string(one.signs)) {
      if (sign == 'N') {
        tracker.Named("a");
      } else if (sign != ' ') {
        (tracker.*meanings.at(sign))();
      }
    }
    tracker.End();
    EXPECT_EQ(told, one.told) << one.signs;
  }
}

TEST(TableSink, HasARowForEachDocument) {
  const std::string file = testing::TempDir() + "people-" + std::to_string(std::random_device()());
  const auto fill = [&](TableSink& sink) {
    HostRecorder host({&sink}, {});
    host.Follow(file + ".log");
    const auto log = [&](const std::string& line) {
      std::ofstream(file + ".log", std::ios::app) << "2024-05-01T09:30:00.120Z 1 " << line << '\n';
    };
    const auto send = [&](const char* name, ItemType type, const std::string& data) {
      host.SendData(name, type, static_cast<std::int32_t>(data.size()), data.data(), nullptr, true);
    };
    log("warning of no document");
    log("document a.png");
    log("warning a.png: odd");
    log("note warning: as its name begins");
    host.SendEvent("DOC_ON_WINDOW");
    host.BeginData();
    send("CODELINE_SURNAME", ItemTypeText, "M\xDCLLER, \"X\"");
    send("CODELINE_SURNAME", ItemTypeText, "M\xDCLLER, \"X\"");
    send("BARCODE_QRCODE", ItemTypeText, "one");
    send("BARCODE_AZTECCODE", ItemTypeText, "\x1b[31mC:\\\u202Egpj.\rz\r\n\x7f\U000E0041\u0085");
    send("BARCODE_QRCODE", ItemTypeBarcodeFormat6, std::string("\0two", 4));
    host.EndData();
    host.SendEvent("DOC_REMOVED");
    host.ReportError("of no document");
    log("document b.png");
    host.SendEvent("DOC_ON_WINDOW");
    host.ReportError("cut");
    host.SendEvent("DOC_REMOVED");
    host.BeginData();  // a swipe, which tells nothing of what a table has
    send("SWIPE_MSR_TRACK_1", ItemTypeText, "%B");
    host.EndData();
    host.End({});
  };
  const auto textOf = [](const std::string& name) {
    std::ifstream stream(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  };
  for (int round = 0; round < 2; ++round) {  // the second takes the place of the first
    TableSink csv(file + ".csv");
    fill(csv);
    TableSink lines(file + ".jsonl");
    fill(lines);
  }
  const std::string csv = textOf(file + ".csv");
  EXPECT_EQ(csv.substr(0, 32), "file,CODELINE_DATE_OF_BIRTH_STR,");
  EXPECT_NE(csv.find("\r\na.png,,,,,,,,,,\"M\uFFFDLLER, \"\"X\"\"\",,"), std::string::npos) << csv;
  EXPECT_NE(csv.find(",\"one\n0x0074776f\",,a.png: odd\r\nb.png,"), std::string::npos) << csv;
  EXPECT_NE(csv.find(R"("\x1b[31mC:\\u{202e}gpj.\rz)"
                     "\r\n"
                     R"(\x7f\u{e0041}\u{85}")"),
            std::string::npos)
      << csv;
  EXPECT_TRUE(csv.ends_with(",cut\r\n")) << csv;
  EXPECT_EQ(std::count(csv.begin(), csv.end(), '\r'), 4);

  std::istringstream lines(textOf(file + ".jsonl"));
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_NE(line.find(R"("BARCODE_QRCODE":["one","0x0074776f"])"), std::string::npos) << line;
  EXPECT_NE(line.find(R"(["\u001b[31mC:\\\u202egpj.\rz\r\n\u007f\udb40\udc41\u0085"])"),
            std::string::npos)
      << line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_TRUE(line.ends_with(R"("warnings":["cut"]})")) << line;
  EXPECT_FALSE(std::getline(lines, line));
  std::filesystem::remove(file + ".csv");
  std::filesystem::remove(file + ".jsonl");
  std::filesystem::remove(file + ".log");
}

TEST(SaveSink, SharesItsFolderWithNoOtherRun) {
  const std::filesystem::path folder =
      testing::TempDir() + "items-" + std::to_string(std::random_device()());
  std::optional<SaveSink> run(folder);
  EXPECT_THROW(SaveSink{folder}, std::runtime_error);
  EXPECT_THROW(SaveSink{folder}, std::runtime_error) << "the one that is refused leaves the claim";
  run.reset();
  EXPECT_TRUE(std::filesystem::is_empty(folder));

  run.emplace(folder);
  run->OnItem({"NAME", ItemTypeText, 1, "A", {}, true, 0, {.number = 1, .dataOpen = true}});
  run.reset();
  EXPECT_THROW(SaveSink{folder}, std::runtime_error);
  const auto left = std::filesystem::directory_iterator(folder);
  EXPECT_EQ(std::distance(begin(left), end(left)), 1) << "items, and no claim";
  std::filesystem::remove_all(folder);
}

TEST(TableSink, LeavesATableThatAnotherRunHasWrittenMeanwhile) {
  const std::string file =
      testing::TempDir() + "raced-" + std::to_string(std::random_device()()) + ".csv";
  const auto tell = [](TableSink& sink, const std::string& warning) {
    HostRecorder host({&sink}, {});
    host.SendEvent("DOC_ON_WINDOW");
    host.ReportError(warning.c_str());
    host.SendEvent("DOC_REMOVED");
  };
  const auto textOf = [](const std::string& name) {
    std::ifstream stream(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  };
  for (const char* const earlier : {"without", "with"}) {
    TableSink late(file);
    tell(late, "late");
    {
      TableSink early(file);
      tell(early, "early");
      early.OnRunEnded({});
    }
    std::string kept;
    try {
      late.OnRunEnded({});
    } catch (const std::runtime_error& refusal) {
      const std::string text = refusal.what();
      const std::string reason = "cannot write table " + file +
                                 ": it has changed since this run began, perhaps by " +
                                 "another run; what was written is kept in ";
      EXPECT_TRUE(text.starts_with(reason)) << text;
      kept = text.substr(std::min(text.size(), reason.size()));
    }
    EXPECT_TRUE(textOf(file).ends_with(",early\r\n")) << earlier;
    EXPECT_TRUE(textOf(kept).ends_with(",late\r\n")) << earlier;
    std::filesystem::remove(kept);
  }
  std::filesystem::remove(file);
}

TEST(Digest, IsTheOneOfTheStandards) {
  // FIPS 180-4 and RFC 4648, section 10; the last is longer than one block.
  EXPECT_EQ(Sha256("abc").substr(0, 4), "\xba\x78\x16\xbf");
  EXPECT_EQ(Sha256("").size(), 32);
  EXPECT_EQ(Base64(""), "");
  EXPECT_EQ(Base64("foobar"), "Zm9vYmFy");
  EXPECT_EQ(Base64("foob"), "Zm9vYg==");
  const std::size_t large = 4000000;
  std::string expected(large / 3 * 4, '/');
  expected += "/w==";
  EXPECT_EQ(Base64(std::string(large, '\xff')), expected);
}

TEST(TroubleSink, LeavesOutWhatItsReaderSeesAnyway) {
  for (const bool told : {true, false}) {
    std::ostringstream output;
    TroubleSink sink(output, {.log = true, .readerErrors = told});
    sink.OnLogLine({0, "A::B", "Reader Error: jam", SaidAgain::AsError});
    sink.OnLogLine({0, "A::B", "reason", SaidAgain::AsFailure});
    sink.OnLogLine({0, "A::B", "other", SaidAgain::Nowhere});
    EXPECT_EQ(output.str(), std::string(told ? "conduit: A::B: Reader Error: jam\n" : "") +
                                "conduit: A::B: other\n");
  }
}

TEST(ProgressLine, MakesWayForOtherLines) {
  std::ostringstream output;
  ProgressLine line(output, std::chrono::milliseconds(0));
  line.OnDataBegan({.number = 1});
  line.OnTimePassed();
  line.OnTimePassed();
  line.OnAnything();
  line.OnError({"jam", false, SaidAgain::Nowhere});
  line.OnTimePassed();
  line.OnAnything();
  EXPECT_EQ(output.str(),
            "\r\x1b[2K... 0:00  1 document, 0 items, 0 errors\r\x1b[2K"
            "\r\x1b[2K... 0:00  1 document, 0 items, 1 error\r\x1b[2K");
}

TEST(ReportSink, LeavesOutWhatWouldMakeThePageUnusable) {
  const std::string file =
      testing::TempDir() + "limits-" + std::to_string(std::random_device()()) + ".html";
  ReportSink sink(file, {.picture = 100, .pictures = 250, .text = 10});
  const auto receive = [&](ItemType type, const std::string& data) {
    const auto length = static_cast<std::int32_t>(data.size());
    sink.OnItem({"A", type, length, data, {}, true, 0});
  };
  for (const unsigned size : {101U, 100U, 100U, 100U}) {
    receive(ItemTypeImage, "BM" + std::string(size - 2, '.'));
  }
  receive(ItemTypeText, "123456789\u00DC");
  sink.OnRunEnded({});
  std::ifstream page(file);
  const std::string text(std::istreambuf_iterator<char>(page), {});
  const auto count = [&](const std::string& part) {
    int found = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
      ++found;
    }
    return found;
  };
  EXPECT_EQ(count("<img"), 2);
  EXPECT_EQ(count("Left out: larger"), 1);
  EXPECT_EQ(count("Left out: the page has"), 1);
  EXPECT_EQ(count("123456789<em>"), 1);
  page.close();
  std::filesystem::remove(file);
}

}  // namespace
}  // namespace conduit
