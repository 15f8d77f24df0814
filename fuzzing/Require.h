#pragma once

#include <cstdio>
#include <cstdlib>

namespace conduit {

/// Ends the fuzzer when something does not hold that always has to.
inline void Require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

}  // namespace conduit
