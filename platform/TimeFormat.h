#pragma once

#include <cstdint>
#include <ctime>

namespace conduit {

/// What became of a date and time that was to be formatted.
struct TimeText {
  bool accepted;
  std::int32_t length;  ///< of the text, without its NUL
  char text[1024];      ///< the formatted text, or why it was refused; NUL-terminated
};

/// Formats a date and time by a `strftime` format. [any thread]
///
/// A conversion that is not among AcceptedTimeConversions and a per cent sign at the end
/// are refused before the C runtime sees them: on some systems it ends the process over
/// them. A text that does not fit comes back empty, and accepted.
/// @param format  not null
/// @param time    each field in the range that the C standard gives it, ISO/IEC
///                9899:2018, 7.27.1; the year from 0 to 9999
TimeText FormatTime(const char* format, const std::tm& time);

}  // namespace conduit
