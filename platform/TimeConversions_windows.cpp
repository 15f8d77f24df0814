#include "platform/TimeConversions.h"

// corecrt.h, by any header of the C library, says which C runtime this is.
#include <ctime>

namespace conduit {

// Microsoft's documentation of strftime: every conversion may carry a "#", which
// drops leading zeros or asks for the long form; the modifiers E and O are not
// documented.
#if defined(_UCRT) || defined(_MSC_VER)
// The Universal C Runtime, which has the conversions of C99.
constexpr const char* Conversions = "aAbBcCdDeFgGhHIjmMnprRStTuUVwWxXyYzZ%";
#else
// msvcrt.dll, which has those of C89 and %z.
constexpr const char* Conversions = "aAbBcdHIjmMpSUwWxXyYzZ%";
#endif

constexpr TimeConversions Accepted[] = {
    {'\0', ConversionSet(Conversions)},
    {'#', ConversionSet(Conversions)},
};

const std::span<const TimeConversions> AcceptedTimeConversions = Accepted;

}  // namespace conduit
