#include <windows.h>

#include "platform/LibraryHold.h"

namespace conduit {

LibraryHold HoldLibrary(const void* address) {
  HMODULE library = nullptr;
  if (address == nullptr ||
      GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                         static_cast<const wchar_t*>(address), &library) == 0) {
    return nullptr;
  }
  return LibraryHold(library, [](void* held) { FreeLibrary(static_cast<HMODULE>(held)); });
}

}  // namespace conduit
