#include "hosting/LoadedModule.h"

#include <stdexcept>
#include <string>

#include "interfaces/ResultCode.h"
#include "platform/FilePath.h"

namespace conduit {

LoadedModule::LoadedModule(const std::filesystem::path& file, IModuleLogger& logger)
    : library(file) {
  const std::int32_t result = library.create(&logger, &module);
  if (result != ResultSuccess || !module) {
    throw std::runtime_error("cannot load module " + Utf8FromPath(file) +
                             ": CIM_GetInputModule answered " + std::to_string(result) +
                             (result == ResultSuccess ? " but gave no module" : ""));
  }
}

LoadedModule::~LoadedModule() { library.destroy(module); }

}  // namespace conduit
