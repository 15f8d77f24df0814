#include <malloc.h>

#include "platform/MemoryInUse.h"

namespace conduit {

std::size_t MemoryInUse() {
  const struct mallinfo2 use = mallinfo2();
  return use.uordblks + use.hblkhd;  // hblkhd: large, mapped blocks
}

}  // namespace conduit
