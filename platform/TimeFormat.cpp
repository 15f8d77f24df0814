#include "platform/TimeFormat.h"

#include <cstdio>

#include "platform/TimeConversions.h"

namespace conduit {
namespace {

/// Returns the end of a conversion, or null when it is not accepted.
/// @param conversion  the character after the per cent sign
const char* SkipConversion(const char* conversion) {
  for (const TimeConversions& row : AcceptedTimeConversions) {
    if (row.modifier == '\0') {
      if (row.conversions.Has(conversion[0])) {
        return conversion + 1;
      }
    } else if (conversion[0] == row.modifier && row.conversions.Has(conversion[1])) {
      return conversion + 2;
    }
  }
  return nullptr;
}

/// Returns the per cent sign of the first conversion that is not accepted, or null.
const char* FindRefusedConversion(const char* format) {
  while (*format != '\0') {
    if (*format != '%') {
      ++format;
    } else if (const char* const end = SkipConversion(format + 1)) {
      format = end;
    } else {
      return format;
    }
  }
  return nullptr;
}

}  // namespace

TimeText FormatTime(const char* format, const std::tm& time) {
  TimeText result;
  const char* const refused = FindRefusedConversion(format);
  result.accepted = refused == nullptr;
  if (result.accepted) {
    // When strftime returns 0, the buffer's content is indeterminate.
    result.length =
        static_cast<std::int32_t>(std::strftime(result.text, sizeof result.text, format, &time));
    result.text[result.length] = '\0';
  } else {
    result.length = std::snprintf(result.text, sizeof result.text,
                                  refused[1] == '\0' ? "the format ends in a per cent sign"
                                                     : "unknown conversion \"%.3s\" in the format",
                                  refused);
  }
  return result;
}

}  // namespace conduit
