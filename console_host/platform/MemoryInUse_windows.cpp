#include <windows.h>
// After windows.h, whose types it uses.
#include <psapi.h>

#include "console_host/platform/MemoryInUse.h"

namespace conduit {

std::size_t MemoryInUse() {
  PROCESS_MEMORY_COUNTERS_EX counters = {};
  K32GetProcessMemoryInfo(GetCurrentProcess(),
                          reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters), sizeof counters);
  return counters.PrivateUsage;
}

}  // namespace conduit
