#include "hosting/ModuleLibrary.h"

#include <stdexcept>
#include <string>

#include "platform/FilePath.h"

namespace conduit {

namespace {

[[noreturn]] void Refuse(const std::filesystem::path& file, const std::string& reason) {
  throw std::runtime_error("cannot load module " + Utf8FromPath(file) + ": " + reason);
}

/// The system's own words for a missing file differ, and some systems then look
/// for the name in folders of theirs.
SharedLibrary Load(const std::filesystem::path& file) {
  if (!std::filesystem::exists(file)) {
    Refuse(file, "no such file");
  }
  if (std::filesystem::is_directory(file)) {
    Refuse(file, "it is a folder");
  }
  try {
    return SharedLibrary(std::filesystem::absolute(file));
  } catch (const std::runtime_error& problem) {
    Refuse(file, problem.what());
  }
}

template <typename Function>
Function Require(const SharedLibrary& library, const char* name,
                 const std::filesystem::path& file) {
  const auto function = library.Find<Function>(name);
  if (!function) {
    Refuse(file, std::string("it does not export ") + name);
  }
  return function;
}

}  // namespace

ModuleLibrary::ModuleLibrary(const std::filesystem::path& file)
    : library(Load(file)),
      create(Require<GetInputModuleFunction>(library, "CIM_GetInputModule", file)),
      destroy(Require<DestroyFunction>(library, "CIM_Destroy", file)) {}

}  // namespace conduit
