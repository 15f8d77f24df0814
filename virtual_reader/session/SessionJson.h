#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace conduit {

/// Parses the text of a session file, in time that grows with its length alone.
///
/// Throws a SessionError for a text that is not JSON, for one nested deeper than any field of a
/// session, for an object of more fields than any of a session, and for a field that an object
/// names twice, of which the library's own parser silently keeps one.
nlohmann::ordered_json ParseSessionJson(const std::string& text);

}  // namespace conduit
