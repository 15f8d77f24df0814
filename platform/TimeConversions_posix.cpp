#include "platform/TimeConversions.h"

namespace conduit {

// ISO/IEC 9899:2018 (C17), 7.27.3.5 "The strftime function". The library of the
// system knows more, but a format that it alone understands would fail on the
// next system.
const TimeConversions AcceptedTimeConversions[] = {
    {'\0', "aAbBcCdDeFgGhHIjmMnprRStTuUVwWxXyYzZ%"},
    {'E', "cCxXyY"},
    {'O', "deHImMSuUVwWy"},
    {'\0', nullptr},
};

}  // namespace conduit
