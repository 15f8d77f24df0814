#pragma once

#include <filesystem>
#include <string_view>

namespace conduit {

/// The environment variable that names the session.
inline constexpr char SessionVariable[] = "HALDEN_READER_SESSION";

/// The prefix of a folder to watch for new files.
inline constexpr std::string_view WatchPrefix = "watch:";

/// Returns the value of SessionVariable; empty when it is not set.
std::filesystem::path SessionLocation();

}  // namespace conduit
