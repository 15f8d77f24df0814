#pragma once  // stands alone in C++17

namespace conduit {

/// A reader error: NUL-terminated text that describes it, as long as it needs to
/// be. Belongs to the library and is good during the error callback only.
struct ReaderErrorInfo {
  char description[1];
};

}  // namespace conduit
