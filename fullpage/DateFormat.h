#pragma once

#include <cstdint>

#include "platform/TimeFormat.h"
#include "runtime/BaseString.h"
#include "runtime/TextBuilder.h"
#include <conduit/ReaderDate.h>

namespace conduit {

/// Returns the full year of a date that has only the year of its century.
/// @param year                 not negative; four digits are not recognised
/// @param currentYear          the full year
/// @param alwaysCurrentCentury true for dates of expiry: the current century.
///                             Otherwise a year at or above the last two digits of
///                             the current one belongs to the 1900s
std::int64_t CompleteYear(std::int32_t year, std::int32_t currentYear, bool alwaysCurrentCentury);

/// Formats a reader's date by a `strftime` format.
///
/// Clamps the day to 1..31, the month to 1..12 and the year to 0 or more, each on
/// its own; completes the century from the current local date. Does not derive the
/// weekday and the day of the year: both are zero. Returns "Invalid: - " and the
/// reason for a format or a year that cannot be formatted, and the empty text when
/// the result has 1,024 bytes or more.
TimeText FormatDateText(const BaseString<char>& format, ReaderDate date, bool alwaysCurrentCentury);

/// Returns the text of FormatDateText as a string.
inline BaseString<char> FormatDate(const BaseString<char>& format, std::int32_t day,
                                   std::int32_t month, std::int32_t year,
                                   bool alwaysCurrentCentury) {
  const TimeText text = FormatDateText(format, {day, month, year}, alwaysCurrentCentury);
  return {text.text, text.length};
}

/// Appends day, month and year unchanged, "05-11-85".
void AppendRawDate(TextBuilder& text, ReaderDate date);

}  // namespace conduit
