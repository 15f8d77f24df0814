#include "hosting/ModuleLibrary.h"

#include "platform/FilePath.h"

namespace conduit {
namespace {

/// The system's own words for a missing file differ, and some systems then look
/// for the name in folders of theirs.
std::shared_ptr<const SharedLibrary> Load(const std::filesystem::path& file) {
  if (!std::filesystem::exists(file)) {
    throw ModuleError(file, "no such file");
  }
  if (std::filesystem::is_directory(file)) {
    throw ModuleError(file, "it is a folder");
  }
  try {
    return std::make_shared<const SharedLibrary>(std::filesystem::absolute(file));
  } catch (const std::runtime_error& problem) {
    throw ModuleError(file, problem.what());
  }
}

template <typename Function>
Function Require(const SharedLibrary& library, const char* name,
                 const std::filesystem::path& file) {
  const auto function = library.Find<Function>(name);
  if (function == nullptr) {
    throw ModuleError(file, std::string("it does not export ") + name);
  }
  return function;
}

}  // namespace

ModuleError::ModuleError(const std::filesystem::path& file, const std::string& reason)
    : std::runtime_error("cannot load module " + Utf8FromPath(file) + ": " + reason),
      reason(reason) {}

ModuleLibrary::ModuleLibrary(const std::filesystem::path& file)
    : file(file),
      library(Load(file)),
      create(Require<GetInputModuleFunction>(*library, "CIM_GetInputModule", file)),
      destroy(Require<DestroyFunction>(*library, "CIM_Destroy", file)) {}

}  // namespace conduit
