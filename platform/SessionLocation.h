#pragma once

#include <filesystem>
#include <string_view>

namespace conduit {

/// The environment variable that names the session.
inline constexpr char SessionVariable[] = "HALDEN_READER_SESSION";

/// Stands before the name of a folder that is to be watched as it fills.
inline constexpr std::string_view WatchPrefix = "watch:";

/// What the environment names; empty when it names nothing.
std::filesystem::path SessionLocation();

}  // namespace conduit
