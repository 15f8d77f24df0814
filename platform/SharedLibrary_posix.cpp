#include <dlfcn.h>

#include <stdexcept>
#include <string>

#include "platform/SharedLibrary.h"

namespace conduit {

SharedLibrary::SharedLibrary(const std::filesystem::path& file)
    : handle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle != nullptr) {
    return;
  }
  // Most loader messages begin with the file name, which the caller adds as well.
  std::string reason = dlerror();
  const std::string prefix = file.string() + ": ";
  if (reason.starts_with(prefix)) {
    reason.erase(0, prefix.size());
  }
  throw std::runtime_error(reason);
}

SharedLibrary::~SharedLibrary() { dlclose(handle); }

void* SharedLibrary::FindAddress(const char* name) const { return dlsym(handle, name); }

}  // namespace conduit
