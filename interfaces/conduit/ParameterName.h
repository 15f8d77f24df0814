#pragma once  // stands alone in C++17

#include <cstdint>

namespace conduit {

/// The parameters of the full-page module, by the names under which a host sets them.
namespace ParameterName {

/// How much the reader library logs: LogLevelLow to LogLevelHigh.
inline constexpr char LogLevel[] = "LogLevel";
/// The reader library's log file; not empty.
inline constexpr char LogFileName[] = "LogFileName";

// strftime formats of the items whose names end in _FORMATTED.
inline constexpr char DateOfBirthFormat[] = "DateOfBirthFormat";
inline constexpr char ExpiryDateFormat[] = "ExpiryDateFormat";
inline constexpr char IssueDateFormat[] = "IssueDateFormat";

/// The characters of a codeline that Signal::BadChars tells of; not empty.
inline constexpr char BadChars[] = "BadChars";

}  // namespace ParameterName

/// What holds until a host sets the parameter. GetParameter gives the empty text till
/// then.
namespace ParameterDefault {

inline constexpr std::int32_t LogLevel = 1;
inline constexpr char LogFileName[] = "FullPageOutputConduit.log";
inline constexpr char DateFormat[] = "%d-%m-%Y";
inline constexpr char BadChars[] = "*_";

}  // namespace ParameterDefault

inline constexpr std::int32_t LogLevelLow = 0;
inline constexpr std::int32_t LogLevelHigh = 5;

}  // namespace conduit
