#include "platform/TimeConversions.h"

namespace conduit {

// ISO/IEC 9899:2018 (C17), 7.27.3.5 "The strftime function". The system's own
// extensions are refused: such a format would fail on another system.
constexpr TimeConversions Accepted[] = {
    {'\0', ConversionSet("aAbBcCdDeFgGhHIjmMnprRStTuUVwWxXyYzZ%")},
    {'E', ConversionSet("cCxXyY")},
    {'O', ConversionSet("deHImMSuUVwWy")},
};

const std::span<const TimeConversions> AcceptedTimeConversions = Accepted;

}  // namespace conduit
