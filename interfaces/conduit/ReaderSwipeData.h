#pragma once  // self-contained; C++17

#include <cstddef>

namespace conduit {

/// The tracks of a swiped magnetic-stripe card: NUL-terminated bytes. The reader
/// library owns the record; it is valid during the data callback only and may be
/// unaligned.
struct ReaderSwipeData {
  char track1[1024];
  char track2[1024];
  char track3[1024];  ///< the last field: a reader may end the record at its NUL
};

static_assert(offsetof(ReaderSwipeData, track1) == 0);
static_assert(offsetof(ReaderSwipeData, track2) == 1024);
static_assert(offsetof(ReaderSwipeData, track3) == 2048);
static_assert(alignof(ReaderSwipeData) == 1);

}  // namespace conduit
