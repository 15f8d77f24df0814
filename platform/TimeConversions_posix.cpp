#include "platform/TimeConversions.h"

namespace conduit {

// ISO/IEC 9899:2018 (C17), 7.27.3.5 "The strftime function". The library of the
// system knows more, but a format that it alone understands would fail on the
// next system.
constexpr TimeConversions Accepted[] = {
    {'\0', ConversionSet("aAbBcCdDeFgGhHIjmMnprRStTuUVwWxXyYzZ%")},
    {'E', ConversionSet("cCxXyY")},
    {'O', ConversionSet("deHImMSuUVwWy")},
};

const std::span<const TimeConversions> AcceptedTimeConversions = Accepted;

}  // namespace conduit
