#pragma once  // self-contained; C++17

namespace conduit {

/// A reader error: its description, a NUL-terminated text of any length. The
/// library owns it; it is valid during the error callback only.
struct ReaderErrorInfo {
  char description[1];
};

}  // namespace conduit
