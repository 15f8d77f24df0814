#include "parameters/Parameter.h"

#include <conduit/ResultCode.h>

namespace conduit {

Parameter::Parameter(const char* name, const char* qualifiedName, IModuleLogger* logger)
    : name(name), qualifiedName(qualifiedName), logger(logger) {}

std::int32_t Parameter::SetValue(const char* text) {
  valueText = text;
  return ResultSuccess;
}

std::int32_t Parameter::GetValue(const char** value) {
  *value = valueText.buffer;
  return ResultSuccess;
}

std::int32_t Parameter::ValidateCurrent() { return ResultSuccess; }

}  // namespace conduit
