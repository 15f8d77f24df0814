#pragma once

#include <cstdint>
#include <string>

namespace conduit {

/// What a result of one of a module's calls means, "no parameter has that name"; empty for a
/// number that none of them answers.
const char* ResultMeaning(std::int32_t result);

/// "result 2: no parameter has that name", or the number alone.
std::string ExplainedResult(std::int32_t result);

}  // namespace conduit
