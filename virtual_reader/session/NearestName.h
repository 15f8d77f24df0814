#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace conduit {

/// What to tell about a name that is not among the known ones: a short list of
/// them whole, of a long one the name that was probably meant.
std::string UnknownName(std::string_view kind, std::string_view name,
                        const std::vector<std::string>& known);

}  // namespace conduit
