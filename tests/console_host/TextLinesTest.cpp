#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "console_host/DataFormat.h"
#include "console_host/TextSink.h"
#include "console_host/Utf8.h"

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

}  // namespace
}  // namespace conduit
