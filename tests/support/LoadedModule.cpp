#include "tests/support/LoadedModule.h"

#include <dlfcn.h>

#include <stdexcept>

namespace conduit {
namespace {

void* Load(const std::filesystem::path& file) {
  void* const library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    throw std::runtime_error(dlerror());
  }
  return library;
}

template <class Function>
Function Find(void* library, const char* name) {
  void* const symbol = dlsym(library, name);
  if (symbol == nullptr) {
    throw std::runtime_error(dlerror());
  }
  return reinterpret_cast<Function>(symbol);
}

}  // namespace

LoadedModule::LoadedModule(const std::filesystem::path& file, IModuleLogger* logger)
    : library(Load(file)) {
  getInputModule = Find<GetInputModuleFunction>(library, "CIM_GetInputModule");
  destroy = Find<DestroyFunction>(library, "CIM_Destroy");
  if (getInputModule(logger, &module) != 0) {
    throw std::runtime_error("CIM_GetInputModule failed");
  }
}

LoadedModule::~LoadedModule() {
  destroy(module);
  dlclose(library);
}

}  // namespace conduit
