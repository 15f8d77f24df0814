#include <windows.h>

#include "platform/LibraryHold.h"

namespace conduit {

LibraryHold::LibraryHold(const void* address) {
  HMODULE module = nullptr;
  if (address != nullptr &&
      GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                         static_cast<const wchar_t*>(address), &module) != 0) {
    library = module;
  }
}

LibraryHold::~LibraryHold() {
  if (library != nullptr) {
    FreeLibrary(static_cast<HMODULE>(library));
  }
}

}  // namespace conduit
