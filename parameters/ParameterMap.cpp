#include "parameters/ParameterMap.h"

#include <iterator>
#include <utility>

#include "runtime/Log.h"
#include "runtime/Text.h"
#include <conduit/ParameterName.h>
#include <conduit/ResultCode.h>

namespace conduit {

ParameterMap::ParameterMap(IModuleLogger* logger, const char* prefix)
    : logger(logger), prefix(prefix) {}

ParameterMap::~ParameterMap() { table.DeleteAll(); }

StringParameter* ParameterMap::AddStringParameter(const char* name, BaseString<char>* target) {
  return Register<StringParameter>(name, target);
}

IntParameter* ParameterMap::AddIntParameter(const char* name, std::int32_t* target) {
  return Register<IntParameter>(name, target);
}

IntParameter* ParameterMap::AddLogLevelParameter(std::int32_t* target) {
  return AddIntParameter(ParameterName::LogLevel, target);
}

std::int32_t ParameterMap::SetValue(const char* name, const char* value) {
  Parameter* const parameter = FindParameter(name);
  if (parameter == nullptr) {
    Log(logger, MessageUnknownName, "ParameterMap::SetValue", "Cannot set value to parameter \"",
        OrEmpty(name), "\", no such parameter exists");
    return ResultUnknownParameter;
  }
  return parameter->SetValue(value);
}

std::int32_t ParameterMap::GetValue(const char* name, const char** value) {
  Parameter* const parameter = FindParameter(name);
  if (parameter == nullptr) {
    Log(logger, MessageUnknownName, "ParameterMap::GetValue", "Cannot get value to parameter \"",
        OrEmpty(name), "\", no such parameter exists");
    return ResultUnknownParameter;
  }
  return parameter->GetValue(value);
}

void ParameterMap::GetParameterAt(std::int32_t index, const char** name, const char** value) {
  if (index < 0 || index >= table.Count() || name == nullptr || value == nullptr) {
    return;
  }
  const auto entry = std::next(table.begin(), index);
  *name = entry->first.buffer;
  entry->second->GetValue(value);
}

Parameter* ParameterMap::FindParameter(const char* name) const {
  const auto entry = table.find(LentText{OrEmpty(name)});
  return entry != table.end() ? entry->second : nullptr;
}

template <class Typed, class Target>
Typed* ParameterMap::Register(const char* name, Target* target) {
  TextBuilder qualifiedName;
  qualifiedName << prefix << ":" << name;
  auto parameter = std::make_unique<Typed>(name, qualifiedName.Text(), logger, target);
  Typed* const registered = parameter.get();
  if (FindParameter(name) != nullptr) {
    nameTaken.push_back(std::move(parameter));
  } else {
    table.Add(parameter->name, registered);
    parameter.release();
  }
  return registered;
}

}  // namespace conduit
