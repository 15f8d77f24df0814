#include "console_host/DefaultModule.h"

#include <string_view>

#include "platform/Process.h"

namespace conduit {
namespace {

/// From the program's folder; "." where modules are installed beside it.
constexpr std::string_view ModuleFolder = MODULE_FOLDER;

}  // namespace

std::filesystem::path DefaultModule() {
  const std::filesystem::path folder = ProgramFile().parent_path();
  const std::filesystem::path beside = folder / DEFAULT_MODULE;
  const std::filesystem::path installed =
      (folder / ModuleFolder / DEFAULT_MODULE).lexically_normal();
  return !exists(beside) && exists(installed) ? installed : beside;
}

std::string DefaultModulePlace() {
  std::string place = DEFAULT_MODULE " beside this program";
  if (ModuleFolder != ".") {
    place.append(" or in ").append(ModuleFolder);
  }
  return place;
}

}  // namespace conduit
