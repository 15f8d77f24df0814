#include "fullpage/DateFormat.h"

#include <algorithm>
#include <ctime>

#include "platform/LocalTime.h"
#include "platform/TimeFormat.h"
#include "runtime/DecimalText.h"

namespace conduit {
namespace {

constexpr std::int32_t FirstTmYear = 1900;
constexpr std::int64_t LastYear = 9999;

/// The message is cut to what its reader has room for.
BaseString<char> Invalid(const char* message) {
  return BaseString<char>::FromFormat("Invalid: - %.254s", message);
}

}  // namespace

std::int64_t CompleteYear(std::int32_t year, std::int32_t currentYear, bool alwaysCurrentCentury) {
  const std::int32_t currentYearOfCentury = currentYear % 100;
  const std::int64_t century = alwaysCurrentCentury || year < currentYearOfCentury
                                   ? currentYear - currentYearOfCentury
                                   : 1900;
  return century + year;
}

BaseString<char> FormatDate(const BaseString<char>& format, std::int32_t day, std::int32_t month,
                            std::int32_t year, bool alwaysCurrentCentury) {
  const std::int64_t calendarYear =
      CompleteYear(std::max(year, 0), LocalTime().tm_year + FirstTmYear, alwaysCurrentCentury);
  if (calendarYear > LastYear) {
    return Invalid("the year is outside 0 to 9999");
  }
  std::tm date{};
  date.tm_mday = std::clamp(day, 1, 31);
  date.tm_mon = std::clamp(month, 1, 12) - 1;
  date.tm_year = static_cast<int>(calendarYear) - FirstTmYear;
  const TimeText formatted = FormatTime(format.buffer, date);
  return formatted.accepted ? BaseString<char>(formatted.text, formatted.length)
                            : Invalid(formatted.text);
}

RawDateText RawDate(ReaderDate date) {
  RawDateText raw;
  char* end = raw.text;
  for (const std::int32_t part : {date.day, date.month, date.year}) {
    end = WriteTwoDigits(part, end);
    *end++ = '-';
  }
  end[-1] = '\0';
  return raw;
}

}  // namespace conduit
