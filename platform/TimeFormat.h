#pragma once

#include <cstdint>
#include <ctime>

namespace conduit {

/// The result of FormatTime.
struct TimeText {
  bool accepted;
  std::int32_t length;  ///< of the text, without its NUL
  char text[1024];      ///< the formatted text or the reason of a refusal; NUL-terminated
};

/// Formats a date and time by a `strftime` format. [any thread]
///
/// Refuses a conversion outside AcceptedTimeConversions and a trailing per cent sign before
/// the C runtime sees them: some runtimes end the process. A result that does not fit is
/// accepted and empty.
/// @param format  not null
/// @param time    each field in the range of ISO/IEC 9899:2018, 7.27.1; the year from 0
///                to 9999
TimeText FormatTime(const char* format, const std::tm& time);

}  // namespace conduit
