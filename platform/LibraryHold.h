#pragma once

namespace conduit {

/// Keeps the library that an address stands in loaded for as long as this lives, where a
/// library's threads cannot be waited for while it is unloaded: there a host that unloads
/// it too early leaves it behind, which is better than a thread in code that is gone.
/// Elsewhere it does nothing.
class LibraryHold {
 public:
  explicit LibraryHold(const void* address);
  ~LibraryHold();
  LibraryHold(const LibraryHold&) = delete;
  LibraryHold& operator=(const LibraryHold&) = delete;

 private:
  [[maybe_unused]] void* library = nullptr;
};

}  // namespace conduit
