#pragma once

#include <nlohmann/json_fwd.hpp>
#include <ostream>
#include <string>
#include <string_view>

namespace conduit {

/// Writes the text and flushes. Throws a std::runtime_error with the system's reason when
/// `output`, which is standard output, does not take all of it.
void WriteOut(std::ostream& output, std::string_view text);

/// The object on a line of its own. What is no UTF-8 becomes U+FFFD, and characters that
/// reorder or hide text or that a terminal acts on are written as \u202e: a JSON parser
/// reads the same text.
std::string JsonLine(const nlohmann::ordered_json& object);

}  // namespace conduit
