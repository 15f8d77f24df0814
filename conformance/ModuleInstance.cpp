#include "conformance/ModuleInstance.h"

#include <limits>

#include "conformance/Verdict.h"
#include "interfaces/ResultCode.h"

namespace conduit {

ModuleInstance::ModuleInstance(const CheckContext& context, IModuleLogger* logger)
    : library(context.library) {
  RequireResult("CIM_GetInputModule", ResultSuccess, library.create(logger, &module));
  if (!module) {
    Fail("CIM_GetInputModule answered 0 but gave no module");
  }
}

ModuleInstance::~ModuleInstance() { library.destroy(module); }

void RequireNothingWritten(const ModuleInstance& module, ListReader read, std::int32_t count,
                           const std::string& operation) {
  const auto require = [&](const ListEntry& entry, const std::string& arguments) {
    if (entry.name || entry.value) {
      Fail(operation + " writes a result for " + arguments);
    }
  };
  for (const std::int32_t index : {-1, count, std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min()}) {
    ListEntry entry;
    (module.operator->()->*read)(index, &entry.name, &entry.value);
    require(entry, "index " + std::to_string(index) + " of " + std::to_string(count));
  }
  ListEntry entry;
  (module.operator->()->*read)(0, &entry.name, nullptr);
  (module.operator->()->*read)(0, nullptr, &entry.value);
  require(entry, "a null pointer beside it");
}

std::vector<std::string> ParameterNames(const ModuleInstance& module) {
  std::vector<std::string> names;
  const std::int32_t count = module->GetParameterCount();
  for (std::int32_t i = 0; i < count; ++i) {
    ListEntry entry;
    module->GetParameterAt(i, &entry.name, &entry.value);
    if (entry.name) {
      names.emplace_back(entry.name);
    }
  }
  return names;
}

}  // namespace conduit
