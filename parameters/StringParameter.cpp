#include "parameters/StringParameter.h"

#include <cstring>

#include "platform/LocalTime.h"
#include "platform/TimeFormat.h"
#include "runtime/Log.h"
#include <conduit/ResultCode.h>

namespace conduit {

StringParameter::StringParameter(const char* name, const char* qualifiedName, IModuleLogger* logger,
                                 BaseString<char>* target)
    : Parameter(name, qualifiedName, logger), target(target) {}

std::int32_t StringParameter::SetValue(const char* text) {
  BaseString<char> candidate(text);
  if (const std::int32_t result = Validate(candidate); result != ResultSuccess) {
    return result;
  }
  // Makes both copies before it changes anything: a failed allocation changes nothing.
  BaseString<char> given(candidate);
  target->Swap(candidate);
  valueText.Swap(given);
  Log(logger, MessageConfiguration, "StringParameter::SetValue", qualifiedName, " = ", *target);
  return ResultSuccess;
}

std::int32_t StringParameter::ValidateCurrent() { return Validate(*target); }

std::int32_t StringParameter::Validate(const BaseString<char>& candidate) {
  if (required && candidate.length == 0) {
    return Refuse(ResultValueMissing, " - parameter has no value");
  }
  if (mustStartWith && std::strncmp(candidate.buffer, startText.buffer,
                                    static_cast<std::size_t>(startText.length)) != 0) {
    return Refuse(ResultInvalidValue, " - parameter value \"", candidate,
                  "\" must start with the value \"", startText, "\"");
  }
  if (variableSyntax && !variableSyntaxExempt && candidate.length > 0 &&
      candidate.buffer[0] != '$') {
    return Refuse(ResultInvalidValue, " - parameter value \"", candidate,
                  "\" does not use variable name syntax");
  }
  if (dateTimeFormat && !FormatTime(candidate.buffer, LocalTime()).accepted) {
    return Refuse(ResultInvalidValue, " - parameter value \"", candidate,
                  "\" does failed date/time validation");
  }
  return ResultSuccess;
}

template <class... Pieces>
std::int32_t StringParameter::Refuse(std::int32_t result, const Pieces&... pieces) {
  Log(logger, MessageFailure, "StringParameter::Validate", "Invalid value for ", qualifiedName,
      pieces...);
  return result;
}

}  // namespace conduit
