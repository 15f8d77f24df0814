#pragma once

#include <filesystem>

namespace conduit {

/// The environment variable that names the session file.
inline constexpr char SessionVariable[] = "HALDEN_READER_SESSION";

/// The file that the environment names; empty when it names none.
std::filesystem::path SessionLocation();

}  // namespace conduit
