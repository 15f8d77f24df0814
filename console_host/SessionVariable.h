#pragma once

namespace conduit {

/// The environment variable that names the session which the virtual reader
/// plays.
inline constexpr const char* SessionVariable = "HALDEN_READER_SESSION";

/// Stands before the name of a folder in it that is to be watched as it fills.
inline constexpr const char* WatchPrefix = "watch:";

}  // namespace conduit
