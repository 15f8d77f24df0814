#include "fullpage/DateFormat.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <string_view>

#include "platform/LocalTime.h"
#include "platform/TimeFormat.h"

namespace conduit {
namespace {

constexpr std::int32_t FirstTmYear = 1900;
constexpr std::int64_t LastYear = 9999;

/// Truncates the message to the size that a host expects.
void MakeInvalid(TimeText& text, const char* message) {
  constexpr std::size_t longest = 254;
  TextBuilder invalid;
  invalid << "Invalid: - " << std::string_view(message).substr(0, longest);
  text.accepted = false;
  text.length = static_cast<std::int32_t>(invalid.Length());
  std::memcpy(text.text, invalid.Text(), invalid.Length() + 1);
}

}  // namespace

std::int64_t CompleteYear(std::int32_t year, std::int32_t currentYear, bool alwaysCurrentCentury) {
  const std::int32_t currentYearOfCentury = currentYear % 100;
  const std::int64_t century = alwaysCurrentCentury || year < currentYearOfCentury
                                   ? currentYear - currentYearOfCentury
                                   : 1900;
  return century + year;
}

TimeText FormatDateText(const BaseString<char>& format, ReaderDate date,
                        bool alwaysCurrentCentury) {
  const std::int64_t calendarYear =
      CompleteYear(std::max(date.year, 0), LocalTime().tm_year + FirstTmYear, alwaysCurrentCentury);
  const bool tooLate = calendarYear > LastYear;
  std::tm time{};
  time.tm_mday = std::clamp(date.day, 1, 31);
  time.tm_mon = std::clamp(date.month, 1, 12) - 1;
  time.tm_year = static_cast<int>(tooLate ? LastYear : calendarYear) - FirstTmYear;
  TimeText text = FormatTime(format.buffer, time);
  if (tooLate) {
    MakeInvalid(text, "the year is outside 0 to 9999");
  } else if (!text.accepted) {
    MakeInvalid(text, text.text);
  }
  return text;
}

void AppendRawDate(TextBuilder& text, ReaderDate date) {
  text.AppendTwoDigits(date.day) << "-";
  text.AppendTwoDigits(date.month) << "-";
  text.AppendTwoDigits(date.year);
}

}  // namespace conduit
