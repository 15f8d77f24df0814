#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "console_host/ProgressLine.h"
#include "console_host/TextSink.h"
#include "console_host/TroubleSink.h"
#include "console_host/report/ReportSink.h"
#include "hosting/DataFormat.h"
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
  sink.Receive(ErrorReported{"jam\x1b[0m", false});
  sink.Receive(LogLine{1, "A::B", "text"});
  sink.Receive(LogLine{2, "A::B", "more"});
  EXPECT_EQ(output.str(),
            "\x1b[1;31mERROR   jam\\x1b[0m\x1b[0m\n"
            "\x1b[2mlog 1   A::B: text\x1b[0m\n");
}

TEST(TextSink, KeepsTheOrderOfAReaderThatIsFasterThanItsStart) {
  std::ostringstream output;
  TextSink sink(output, {});
  sink.Receive(CallBegan{});
  sink.Receive(ErrorReported{"dirty", false});
  sink.Receive(EventReceived{"A"});
  sink.Receive(StateReported{"Enabled"});
  sink.Receive(CallReturned{"", 0, {}});
  sink.Receive(DataEnded{});  // without a beginning: must not indent below nothing
  sink.Receive(EventReceived{"B"});
  EXPECT_EQ(output.str(), "ERROR   dirty\nevent   A\nstate   Enabled\nend\nevent   B\n");
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
    sink.Receive(LogLine{0, "A::B", "Reader Error: jam"});
    sink.Receive(ErrorReported{"jam", false});
    sink.Receive(LogLine{0, "A::B", "Reader Error: jam"});
    sink.Receive(LogLine{0, "A::B", "other"});
    sink.Receive(TimePassed{});
    const std::string jam = "conduit: A::B: Reader Error: jam\n";
    EXPECT_EQ(output.str(), (told ? jam : "") + jam + "conduit: A::B: other\n");
  }
}

TEST(ProgressLine, MakesWayForOtherLines) {
  std::ostringstream output;
  ProgressLine line(output, std::chrono::milliseconds(0));
  line.Receive(DataBegan{});
  line.Receive(TimePassed{});
  line.Receive(TimePassed{});
  line.Receive(ErrorReported{"jam", false});
  line.Receive(TimePassed{});
  line.Receive(RunEnded{});
  EXPECT_EQ(output.str(),
            "\r\x1b[2K... 0:00  1 document, 0 items, 0 errors\r\x1b[2K"
            "\r\x1b[2K... 0:00  1 document, 0 items, 1 error\r\x1b[2K");
}

TEST(ReportSink, LeavesOutWhatWouldMakeThePageUnusable) {
  const std::string file = testing::TempDir() + "/limits.html";
  ReportSink sink(file, {.picture = 100, .pictures = 250, .text = 10});
  const auto receive = [&](ItemType type, const std::string& data) {
    const auto length = static_cast<std::int32_t>(data.size());
    sink.Receive(ItemReceived{"A", type, length, data, {}, true, 0});
  };
  for (const unsigned size : {101U, 100U, 100U, 100U}) {
    receive(ItemTypeImage, "BM" + std::string(size - 2, '.'));
  }
  receive(ItemTypeText, "123456789\u00DC");
  sink.Receive(RunEnded{});
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
}

}  // namespace
}  // namespace conduit
