#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace conduit {

/// Ends the fuzzer when something does not hold that always has to.
inline void Require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
  }
}

/// What of a text arrives as `const char*`.
inline std::string UpToNul(const std::string& text) { return text.substr(0, text.find('\0')); }

}  // namespace conduit
