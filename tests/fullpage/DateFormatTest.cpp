#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <string>
#include <vector>

#include "fullpage/DateFormat.h"
#include "fullpage/FullPageInputModule.h"
#include "platform/LocalTime.h"
#include "platform/TimeFormat.h"
#include "tests/support/Journal.h"

namespace conduit {
namespace {

constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

TEST(DateFormat, CompletesTheCenturyAgainstTheCurrentYear) {
  EXPECT_EQ(CompleteYear(85, 2026, false), 1985);
  EXPECT_EQ(CompleteYear(25, 2026, false), 2025);
  EXPECT_EQ(CompleteYear(26, 2026, false), 1926);
  EXPECT_EQ(CompleteYear(30, 2026, true), 2030);
  EXPECT_EQ(CompleteYear(99, 2026, true), 2099);
  EXPECT_EQ(CompleteYear(0, 2026, false), 2000);
  EXPECT_EQ(CompleteYear(1985, 2026, false), 3885);
  EXPECT_EQ(CompleteYear(99, 2100, false), 1999);
  EXPECT_EQ(CompleteYear(0, 2100, false), 1900);
  EXPECT_EQ(CompleteYear(Highest, 2026, true), 2000 + std::int64_t{Highest});
}

/// The first two digits of the current year. The cases use the year 99 because it is in
/// the current century until 2099.
std::string Century() { return std::to_string((LocalTime().tm_year + 1900) / 100); }

TEST(DateFormat, ClampsDayMonthAndYearEachOnItsOwn) {
  const std::string century = Century();
  struct {
    std::int32_t day, month, year;
    std::string expected;
  } const cases[] = {
      {5, 11, 99, "05-11-" + century + "99"},
      {0, 0, -1, "01-01-" + century + "00"},
      {40, 13, 99, "31-12-" + century + "99"},
      {31, 2, 99, "31-02-" + century + "99"},
      {Lowest, Lowest, Lowest, "01-01-" + century + "00"},
      {Highest, Highest, 99, "31-12-" + century + "99"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(FormatDate("%d-%m-%Y", row.day, row.month, row.year, true).buffer, row.expected);
  }
}

TEST(DateFormat, YearBeyondFourDigitsIsInvalid) {
  EXPECT_STREQ(FormatDate("%Y", 1, 1, 1985, false).buffer, "3885");
  EXPECT_STREQ(FormatDate("%Y", 1, 1, 8099, false).buffer, "9999");
  for (const std::int32_t year : {8100, Highest}) {
    EXPECT_STREQ(FormatDate("%Y", 1, 1, year, false).buffer,
                 "Invalid: - the year is outside 0 to 9999");
  }
}

TEST(DateFormat, WeekdayIsNotDerived) {
  std::setlocale(LC_ALL, "C");
  for (const std::int32_t day : {1, 2, 3}) {
    EXPECT_STREQ(FormatDate("%A", day, 11, 85, false).buffer, "Sunday");
  }
}

TEST(DateFormat, TextThatDoesNotFitBecomesEmpty) {
  EXPECT_STREQ(FormatDate("", 1, 1, 1, false).buffer, "");
  const std::string fits(1023, 'x');
  EXPECT_EQ(FormatDate(fits.c_str(), 1, 1, 1, false).buffer, fits);
  EXPECT_STREQ(FormatDate((fits + "x").c_str(), 1, 1, 1, false).buffer, "");
}

TEST(DateFormat, RefusesUnknownConversions) {
  const char* const refused[] = {"%",   "%d %", "%Q",   "%i",  "%Ed",
                                 "%OY", "%E",   "%EOy", "%-d", "%\xFF"};
  for (const char* const format : refused) {
    const std::string text = FormatDate(format, 1, 1, 1, false).buffer;
    EXPECT_EQ(text.rfind("Invalid: - ", 0), 0U) << format << " gave " << text;
    EXPECT_GT(text.size(), std::string("Invalid: - ").size());
    EXPECT_FALSE(FormatTime(format, LocalTime()).accepted);
  }
  EXPECT_STREQ(FormatDate("%d %Q", 1, 1, 1, false).buffer,
               "Invalid: - unknown conversion \"%Q\" in the format");
  EXPECT_STREQ(FormatDate("%EOy", 1, 1, 1, false).buffer,
               "Invalid: - unknown conversion \"%EO\" in the format");
  EXPECT_STREQ(FormatDate("%d %", 1, 1, 1, false).buffer,
               "Invalid: - the format ends in a per cent sign");
  EXPECT_STREQ(FormatDate("100%% %d/%m/%y", 5, 11, 85, false).buffer, "100% 05/11/85");
}

TEST(DateFormat, AcceptsTheConversionsOfItsSystem) {
#if defined(_WIN32)
  const char* const accepted = "%#d";
  const char* const refused = "%Ey";
#else
  const char* const accepted = "%Ey";
  const char* const refused = "%#d";
#endif
  EXPECT_TRUE(FormatTime(accepted, LocalTime()).accepted);
  EXPECT_FALSE(FormatTime(refused, LocalTime()).accepted);
  // The conversion consumes exactly both characters.
  for (const char* const end : {"%", "%Q"}) {
    EXPECT_FALSE(FormatTime((std::string(accepted) + end).c_str(), LocalTime()).accepted);
  }
}

TEST(DateFormat, CompletesTheCenturyFromTheCurrentLocalYear) {
#if !defined(_WIN32)
  const std::time_t now = std::time(nullptr);
  for (const char* const zone : {"AAA+11:30", "AAA-13:30"}) {  // one of them is far from UTC
    setenv("TZ", zone, 1);
    tzset();
    const std::tm expected = *std::localtime(&now);
    EXPECT_EQ(LocalTime().tm_hour, expected.tm_hour);
    EXPECT_EQ(LocalTime().tm_mday, expected.tm_mday);
  }
  unsetenv("TZ");
  tzset();
#endif
  const std::int32_t year = LocalTime().tm_year + 1900;
  const auto formatted = [](std::int32_t ofCentury) {
    return std::string(FormatDate("%Y %j", 31, 12, ofCentury, false).buffer);
  };
  EXPECT_EQ(formatted(year % 100), std::to_string(1900 + year % 100) + " 001");
  EXPECT_EQ(formatted(year % 100 - 1), std::to_string(year - 1) + " 001");
}

/// No record produces this item.
TEST(ProcessStringDataItem, DeliversABlankForANullText) {
  Journal journal;
  RecordingLogger logger(journal);
  RecordingHost host(journal);
  host.otherAnswer = 5;
  FullPageInputModule module(&logger);
  module.SetHost(&host);
  EXPECT_EQ(module.ProcessStringDataItem("NAME", nullptr), 5);
  EXPECT_EQ(journal.Take(), std::vector<std::string>{"SendData NAME 4 1 ' ' last"});
}

TEST(DateFormat, RawDatePrintsPartsUnchanged) {
  TextBuilder text;
  AppendRawDate(text, {5, 11, 100});
  AppendRawDate(text << " ", {0, -1, Lowest});
  EXPECT_STREQ(text.Text(), "05-11-100 00--01--2147483648");
}

}  // namespace
}  // namespace conduit
