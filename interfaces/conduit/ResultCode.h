#pragma once  // stands alone in C++17

#include <cstdint>

namespace conduit {

/// What the module's operations and exported functions answer, as int32.
enum ResultCode : std::int32_t {
  ResultSuccess = 0,
  ResultUnknownParameter = 2,   ///< no parameter has the name
  ResultUnknownCondition = 3,   ///< the module knows no such condition, or none was added
  ResultUnknownAction = 4,      ///< the module knows no action of that name
  ResultValueMissing = 5,       ///< a required parameter value is empty
  ResultNoHost = 5,             ///< an action ran while no host was set
  ResultInvalidValue = 6,       ///< a parameter value breaks a rule
  ResultNullPointer = 6,        ///< a null pointer was given to an exported function
  ResultReaderNotStarted = 13,  ///< the reader or its library refused to start
};

/// The one answer to IInputModuleHost::SendData that means something to the
/// module: deliver nothing more of the codeline record that is under way.
inline constexpr std::int32_t StopRecord = 1;

}  // namespace conduit
