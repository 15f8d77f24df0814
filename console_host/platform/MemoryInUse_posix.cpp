#include <malloc.h>

#include "console_host/platform/MemoryInUse.h"

namespace conduit {

std::size_t MemoryInUse() {
  const struct mallinfo2 use = mallinfo2();
  return use.uordblks + use.hblkhd;  // large blocks are mapped and counted apart
}

}  // namespace conduit
