#include <windows.h>

#include <vector>

#include "platform/MemoryInUse.h"

namespace conduit {

/// Sums the heap blocks: the memory of the process grows in steps that would hide a
/// small leak.
std::size_t MemoryInUse() {
  std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  if (count < heaps.size()) heaps.resize(count);

  std::size_t bytes = 0;
  for (const HANDLE heap : heaps) {
    HeapLock(heap);
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(heap, &entry)) {
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData + entry.cbOverhead;
    }
    HeapUnlock(heap);
  }
  return bytes;
}

}  // namespace conduit
