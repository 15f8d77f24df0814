#pragma once

namespace conduit {

/// The environment variable that names the session which the virtual reader
/// plays.
inline constexpr const char* SessionVariable = "HALDEN_READER_SESSION";

}  // namespace conduit
