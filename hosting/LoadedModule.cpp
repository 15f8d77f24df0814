#include "hosting/LoadedModule.h"

#include <conduit/ResultCode.h>

namespace conduit {

LoadedModule::LoadedModule(const ModuleLibrary& library, IModuleLogger* logger) : library(library) {
  const std::int32_t result = library.create(logger, &module);
  if (result != ResultSuccess || module == nullptr) {
    throw ModuleError(library.File(), "CIM_GetInputModule answered " + std::to_string(result) +
                                          (result == ResultSuccess ? " but gave no module" : ""));
  }
}

LoadedModule::LoadedModule(const std::filesystem::path& file, IModuleLogger* logger)
    : LoadedModule(ModuleLibrary(file), logger) {}

LoadedModule::~LoadedModule() { library.destroy(module); }

std::vector<ListedParameter> LoadedModule::Parameters() const {
  std::vector<ListedParameter> parameters;
  const std::int32_t count = module->GetParameterCount();
  for (std::int32_t i = 0; i < count; ++i) {
    const char* name = nullptr;
    const char* value = nullptr;
    module->GetParameterAt(i, &name, &value);
    if (name != nullptr) {
      parameters.push_back({name, value != nullptr ? value : ""});
    }
  }
  return parameters;
}

}  // namespace conduit
