#include "platform/TimeFormat.h"

#include <cstdio>

#include "platform/TimeConversions.h"

namespace conduit {
namespace {

struct FieldRange {
  const char* name;
  int std::tm::*field;
  int low;
  int high;
};

// ISO/IEC 9899:2018, 7.27.1; the year is counted from 1900.
constexpr FieldRange FieldRanges[] = {
    {"second", &std::tm::tm_sec, 0, 60},
    {"minute", &std::tm::tm_min, 0, 59},
    {"hour", &std::tm::tm_hour, 0, 23},
    {"day of the month", &std::tm::tm_mday, 1, 31},
    {"month", &std::tm::tm_mon, 0, 11},
    {"year", &std::tm::tm_year, 0 - 1900, 9999 - 1900},
    {"day of the week", &std::tm::tm_wday, 0, 6},
    {"day of the year", &std::tm::tm_yday, 0, 365},
};

/// The conversion at a per cent sign, without the sign: where it ends, or null
/// when it is not accepted.
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

/// The first per cent sign of the format that no accepted conversion follows, or
/// null when there is none.
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

const FieldRange* FindFieldOutOfRange(const std::tm& time) {
  for (const FieldRange& range : FieldRanges) {
    const int value = time.*range.field;
    if (value < range.low || value > range.high) {
      return &range;
    }
  }
  return nullptr;
}

}  // namespace

TimeText FormatTime(const char* format, const std::tm& time) {
  TimeText result;
  const char* const refused = FindRefusedConversion(format);
  const FieldRange* const range = refused == nullptr ? FindFieldOutOfRange(time) : nullptr;
  result.accepted = refused == nullptr && range == nullptr;
  if (result.accepted) {
    // With the result 0 the content of the buffer is indeterminate.
    result.length =
        static_cast<std::int32_t>(std::strftime(result.text, sizeof result.text, format, &time));
    result.text[result.length] = '\0';
  } else if (range != nullptr) {
    result.length =
        std::snprintf(result.text, sizeof result.text, "the %s is out of range", range->name);
  } else {
    result.length = std::snprintf(result.text, sizeof result.text,
                                  refused[1] == '\0' ? "the format ends in a per cent sign"
                                                     : "unknown conversion \"%.3s\" in the format",
                                  refused);
  }
  return result;
}

}  // namespace conduit
