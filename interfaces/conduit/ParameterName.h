#pragma once  // self-contained; C++17

#include <cstdint>

namespace conduit {

/// The names of the full-page module's parameters.
namespace ParameterName {

/// The level of the reader library's log: LogLevelLow to LogLevelHigh.
inline constexpr char LogLevel[] = "LogLevel";
/// The reader library's log file; not empty.
inline constexpr char LogFileName[] = "LogFileName";

// The strftime formats of the items whose names end in _FORMATTED.
inline constexpr char DateOfBirthFormat[] = "DateOfBirthFormat";
inline constexpr char ExpiryDateFormat[] = "ExpiryDateFormat";
inline constexpr char IssueDateFormat[] = "IssueDateFormat";

/// The characters that raise Signal::BadChars when a codeline contains one; not empty.
inline constexpr char BadChars[] = "BadChars";

}  // namespace ParameterName

/// The values in effect until a host sets the parameter. GetParameter returns the empty
/// text until then.
namespace ParameterDefault {

inline constexpr std::int32_t LogLevel = 1;
inline constexpr char LogFileName[] = "FullPageOutputConduit.log";
inline constexpr char DateFormat[] = "%d-%m-%Y";
inline constexpr char BadChars[] = "*_";

}  // namespace ParameterDefault

inline constexpr std::int32_t LogLevelLow = 0;
inline constexpr std::int32_t LogLevelHigh = 5;

}  // namespace conduit
