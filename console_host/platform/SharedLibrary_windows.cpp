#include <windows.h>

#include <stdexcept>
#include <string>
#include <system_error>

#include "console_host/platform/SharedLibrary.h"

namespace conduit {

SharedLibrary::SharedLibrary(const std::filesystem::path& file)
    // The flag makes the system look for dependencies beside the file.
    : handle(LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
  if (handle) return;
  const int problem = static_cast<int>(GetLastError());
  throw std::runtime_error(std::system_category().message(problem));
}

SharedLibrary::~SharedLibrary() { FreeLibrary(static_cast<HMODULE>(handle)); }

void* SharedLibrary::FindAddress(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), name));
}

}  // namespace conduit
