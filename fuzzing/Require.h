#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace conduit {

/// Aborts the fuzzer when an invariant does not hold.
inline void Require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

/// Returns the part of a text that arrives as `const char*`.
inline std::string UpToNul(const std::string& text) { return text.substr(0, text.find('\0')); }

}  // namespace conduit
