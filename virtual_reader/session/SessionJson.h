#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace conduit {

/// Parses the text of a session file in linear time.
///
/// Throws a SessionError for a text that is not JSON, is nested too deep, has an object with too
/// many fields, or a field that occurs twice in an object: the library's own parser silently drops
/// one of the two.
nlohmann::ordered_json ParseSessionJson(const std::string& text);

}  // namespace conduit
