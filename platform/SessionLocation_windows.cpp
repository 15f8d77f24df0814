#include <windows.h>

#include <string>

#include "platform/SessionLocation.h"

namespace conduit {

// Reads from the system, not from the C runtime: the runtime's copy of the environment
// lacks later changes by the host, and its narrow texts lose characters.
std::filesystem::path SessionLocation() {
  const std::filesystem::path variable = SessionVariable;
  std::wstring name(32768, L'\0');  // no variable is longer
  const DWORD length =
      GetEnvironmentVariableW(variable.c_str(), name.data(), static_cast<DWORD>(name.size()));
  name.resize(length < name.size() ? length : 0);
  return name;
}

}  // namespace conduit
