#include "platform/TimeConversions.h"

// Any C library header includes corecrt.h, which defines _UCRT for the Universal C Runtime.
#include <ctime>

namespace conduit {

// Microsoft's documentation of strftime: every conversion accepts "#", which removes
// leading zeros or selects the long form; the modifiers E and O are not documented.
#if defined(_UCRT) || defined(_MSC_VER)
// The Universal C Runtime has the conversions of C99.
constexpr const char* Conversions = "aAbBcCdDeFgGhHIjmMnprRStTuUVwWxXyYzZ%";
#else
// msvcrt.dll has those of C89 and %z.
constexpr const char* Conversions = "aAbBcdHIjmMpSUwWxXyYzZ%";
#endif

constexpr TimeConversions Accepted[] = {
    {'\0', ConversionSet(Conversions)},
    {'#', ConversionSet(Conversions)},
};

const std::span<const TimeConversions> AcceptedTimeConversions = Accepted;

}  // namespace conduit
