#pragma once  // self-contained; C++17

#include <cstdint>

namespace conduit {

/// The results of the module's operations and exported functions.
enum ResultCode : std::int32_t {
  ResultSuccess = 0,
  ResultUnknownParameter = 2,   ///< no parameter has the name
  ResultUnknownCondition = 3,   ///< the module knows no such condition, or none was added
  ResultUnknownAction = 4,      ///< the module knows no action of that name
  ResultValueMissing = 5,       ///< a required parameter value is empty
  ResultNoHost = 5,             ///< an action ran while no host was set
  ResultInvalidValue = 6,       ///< a parameter value breaks a rule
  ResultNullPointer = 6,        ///< an exported function received a null pointer
  ResultReaderNotStarted = 13,  ///< the reader or its library refused to start
};

/// The only answer of IInputModuleHost::SendData that the module acts on: it
/// delivers nothing more of the current codeline record.
inline constexpr std::int32_t StopRecord = 1;

}  // namespace conduit
