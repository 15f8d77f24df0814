#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "hosting/LoadedModule.h"
#include "tests/samples/PseudoTerminal.h"
#include "tests/support/Journal.h"

namespace conduit {
namespace {

using namespace std::string_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsSupersetOf;

constexpr std::chrono::milliseconds Moment(5);

class SerialLineModuleTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!PseudoTerminal::IsAvailable()) {
      GTEST_SKIP() << "this system has no pseudo-terminal";
    }
  }
  void TearDown() override { module->Shutdown(); }

  std::int32_t Start(const std::string& port) {
    module->SetHost(&host);
    module->SetParameter("Port", port.c_str());
    journal.Take();
    heard.clear();
    return module->Initialise();
  }

  /// Returns the next journal lines up to the first that contains the text; after 10 s all
  /// lines.
  std::vector<std::string> HeardTo(const std::string& text) {
    for (int moments = 0; moments < 2000; ++moments) {
      std::ranges::move(journal.Take(), std::back_inserter(heard));
      const auto found = std::ranges::find_if(
          heard, [&](const std::string& line) { return line.find(text) != std::string::npos; });
      if (found != heard.end()) {
        std::vector<std::string> taken(heard.begin(), found + 1);
        heard.erase(heard.begin(), found + 1);
        return taken;
      }
      std::this_thread::sleep_for(Moment);
    }
    return std::exchange(heard, {});
  }

  std::unique_ptr<PseudoTerminal> terminal = std::make_unique<PseudoTerminal>();
  Journal journal;
  RecordingLogger logger{journal};
  RecordingHost host{journal};
  std::vector<std::string> heard;
  const LoadedModule module{MODULE_FILE, &logger};
};

std::vector<std::string> WithoutLog(std::vector<std::string> lines) {
  std::erase_if(lines, [](const std::string& line) { return line.starts_with("log "); });
  return lines;
}

TEST_F(SerialLineModuleTest, BracketsEachLineAndReportsThePort) {
  ASSERT_EQ(Start(terminal->name), 0);
  EXPECT_THAT(WithoutLog(HeardTo("SendEvent")),
              ElementsAre("ReportState 'Enabled'", "ReportError ''", "SendEvent DEVICE_CONNECTED"));
  terminal->Write("4006381333931\r\n");
  EXPECT_THAT(WithoutLog(HeardTo("SendEvent END")),
              ElementsAre("ReportState 'Enabled'", "ReportError ''", "BeginData",
                          "SendEvent START_OF_DOCUMENT_DATA", "ReportState 'Reading'",
                          "SendData SERIAL_LINE 4 13 '4006381333931' last", "ReportError ''",
                          "EndData", "SendEvent END_OF_DOCUMENT_DATA"));
  EXPECT_EQ(HeardTo("ReportState").size(), 1);
  EXPECT_EQ(module->Shutdown(), 0);
  EXPECT_THAT(journal.Take(), ElementsAre());
}

struct Case {
  const char* name;
  std::vector<std::string> written;
  std::vector<std::string> lines;  ///< the expected deliveries
  std::string told = {};           ///< an expected report or log line, if any
};

void PrintTo(const Case& one, std::ostream* output) { *output << one.name; }

class SerialLines : public SerialLineModuleTest, public testing::WithParamInterface<Case> {};

TEST_P(SerialLines, AreDelivered) {
  const Case& one = GetParam();
  ASSERT_EQ(Start(terminal->name), 0);
  HeardTo("DEVICE_CONNECTED");
  for (const std::string& piece : one.written) {
    terminal->Write(piece);
    std::this_thread::sleep_for(Moment);
  }
  terminal->Write("\nLAST\n");
  const std::vector<std::string> all = HeardTo("'LAST'");
  std::vector<std::string> lines;
  for (const std::string& line : all) {
    if (line.starts_with("SendData ")) {
      lines.push_back(line);
    }
  }
  std::vector<std::string> expected;
  for (const std::string& line : one.lines) {
    expected.push_back("SendData SERIAL_LINE 4 " + line + " last");
  }
  expected.emplace_back("SendData SERIAL_LINE 4 4 'LAST' last");
  EXPECT_THAT(lines, ElementsAreArray(expected));
  EXPECT_THAT(all, Contains(HasSubstr(one.told)));
}

INSTANTIATE_TEST_SUITE_P(
    SerialLineModule, SerialLines,
    testing::Values(
        Case{"EndInCrLfOrBoth", {"a\r\nb\rc\nd"}, {"1 'a'", "1 'b'", "1 'c'", "1 'd'"}},
        Case{"MayBeEmpty", {"\n\r\n\r"}, {"0 ''", "0 ''", "0 ''"}},
        Case{"MayComeInPieces", {"in ", "pieces\r", "\n", "next"}, {"9 'in pieces'", "4 'next'"}},
        Case{"MayHoldAnyByte", {"\xFF\xC3\x1B[1m\x03"}, {R"(7 '\xFF\xC3\x1B[1m\x03')"}},
        Case{"HoldNoNul", {"a\0b\0\r\0\nc"s}, {"2 'ab'", "1 'c'"}, "Left NUL bytes out of a line"},
        Case{"MayBeLong", {std::string(4096, 'x')}, {"4096"}},
        Case{"MayNotBeEndless",
             {std::string(20000, 'x'), "\nok"},
             {"2 'ok'"},
             "ReportError 'left out a line of more than 4096 bytes'"}),
    [](const auto& one) { return std::string(one.param.name); });

TEST_F(SerialLineModuleTest, ReportsWhyItDoesNotStart) {
  const PseudoTerminal other;
  const LoadedModule reading(MODULE_FILE, nullptr);
  reading->SetHost(&host);
  reading->SetParameter("Port", other.name.c_str());
  ASSERT_EQ(reading->Initialise(), 0);
  HeardTo("DEVICE_CONNECTED");
  HeardTo("ReportState");

  const std::string reasons[][2] = {
      {"", "the parameter Port names no serial port"},
      {"/dev/none", "cannot open serial port /dev/none: No such file or directory"},
      {"/dev/null", "cannot open serial port /dev/null: Inappropriate ioctl for device"},
      {other.name, "cannot open serial port " + other.name + ": it is in use"},
  };
  for (const auto& [port, reason] : reasons) {
    EXPECT_EQ(Start(port), 13) << port;
    EXPECT_THAT(journal.Take(),
                ElementsAre("log 0 SerialLineModule::Initialise: Serial Port Error: " + reason,
                            "ReportError '" + reason + "'", "ReportState 'Error'"));
  }
  reading->Shutdown();
  EXPECT_EQ(Start(other.name), 0);
}

TEST_F(SerialLineModuleTest, RefusesInvalidBaudRates) {
  for (const char* const rate : {"", "fast", "49", "4000001"}) {
    EXPECT_EQ(module->SetParameter("BaudRate", rate), 6) << rate;
  }
  EXPECT_THAT(journal.Take(),
              Contains("log 0 NumericParameter<int>::Validate: Invalid value for "
                       "SerialLine:BaudRate - value 49 is not between the range 50 and 4000000"));
  EXPECT_EQ(module->SetParameter("Port", ""), 5);
}

TEST_F(SerialLineModuleTest, EndsWhenThePortVanishesAndCanRestart) {
  ASSERT_EQ(Start(terminal->name), 0);
  HeardTo("DEVICE_CONNECTED");
  terminal->Write("whole\nhalf");
  HeardTo("SendEvent END");
  std::this_thread::sleep_for(10 * Moment);
  terminal->Unplug();
  const std::string gone = "serial port " + terminal->name + " is gone";
  EXPECT_THAT(HeardTo("Terminated"),
              IsSupersetOf(
                  {"log 0 SerialLineModule::ReadLines: Left out a line that did not end. Bytes: 4"s,
                   "SendEvent DEVICE_DISCONNECTED"s, "ReportError '" + gone + "'",
                   "ReportState 'Terminated'"s}));

  terminal = std::make_unique<PseudoTerminal>();
  EXPECT_EQ(Start(terminal->name), 0);
  HeardTo("DEVICE_CONNECTED");
  terminal->Write("again\n");
  EXPECT_THAT(HeardTo("'again'"), Contains(HasSubstr("5 'again'")));
}

TEST_F(SerialLineModuleTest, StopsAtOnceFromWithinADelivery) {
  host.stopAt = "SERIAL_LINE";
  host.onStop = [this] { module->Shutdown(); };
  ASSERT_EQ(Start(terminal->name), 0);
  HeardTo("DEVICE_CONNECTED");
  terminal->Write("one\ntwo\n");
  HeardTo("SendEvent END");
  module->Shutdown();
  EXPECT_THAT(HeardTo("ReportState"), ElementsAre("ReportState 'Enabled'"));
  EXPECT_THAT(journal.Take(), ElementsAre());
  EXPECT_EQ(Start(terminal->name), 0);
  terminal->Write("three\n");
  EXPECT_THAT(HeardTo("SendData"), Contains(HasSubstr("5 'three'")));
}

TEST_F(SerialLineModuleTest, DoesNotStartFromWithinADelivery) {
  const PseudoTerminal other;
  std::int32_t answer = 0;
  host.stopAt = "SERIAL_LINE";
  host.onStop = [&] {
    module->SetParameter("Port", other.name.c_str());
    answer = module->Initialise();
  };
  ASSERT_EQ(Start(terminal->name), 0);
  terminal->Write("one\n");
  HeardTo("SendEvent END");
  EXPECT_EQ(answer, 13);
}

}  // namespace
}  // namespace conduit
