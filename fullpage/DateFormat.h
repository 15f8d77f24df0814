#pragma once

#include <cstdint>

#include "platform/TimeFormat.h"
#include "runtime/BaseString.h"
#include "runtime/TextBuilder.h"
#include <conduit/ReaderDate.h>

namespace conduit {

/// The year of a date that was given within its century, in full.
/// @param year                 not negative; four digits are not recognised
/// @param currentYear          in full
/// @param alwaysCurrentCentury for dates that lie ahead: the current century;
///                             otherwise a year from the current one's last two
///                             digits upwards belongs to the 1900s
std::int64_t CompleteYear(std::int32_t year, std::int32_t currentYear, bool alwaysCurrentCentury);

/// The text that a `strftime` format makes of a reader's date.
///
/// Day and month are clamped to 1..31 and 1..12, each on its own, the year to 0
/// upwards, and the century is completed against the current local date. The
/// weekday and the day of the year are not derived: they stay zero. A format or
/// a year that cannot be formatted gives "Invalid: - " and the reason; a text of
/// 1,024 bytes or more gives the empty text.
TimeText FormatDateText(const BaseString<char>& format, ReaderDate date, bool alwaysCurrentCentury);

/// The same, as a string of the caller's.
inline BaseString<char> FormatDate(const BaseString<char>& format, std::int32_t day,
                                   std::int32_t month, std::int32_t year,
                                   bool alwaysCurrentCentury) {
  const TimeText text = FormatDateText(format, {day, month, year}, alwaysCurrentCentury);
  return {text.text, text.length};
}

/// Day, month and year as the record holds them, "05-11-85".
void AppendRawDate(TextBuilder& text, ReaderDate date);

}  // namespace conduit
