#pragma once  // stands alone in C++17

#include <cstddef>

namespace conduit {

/// The tracks of a swiped magnetic-stripe card, as the reader library hands them
/// over: NUL-terminated bytes. Belongs to the library, is good during the data
/// callback only, and may stand at any address.
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
