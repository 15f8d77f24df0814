#pragma once  // self-contained; C++17

#include <cstddef>
#include <cstdint>

namespace conduit {

#pragma pack(push, 1)

/// A date in a reader's record. The parts may be out of range.
struct ReaderDate {
  std::int32_t day;    ///< of the month
  std::int32_t month;  ///< 1 = January
  std::int32_t year;   ///< within its century
};

#pragma pack(pop)

static_assert(offsetof(ReaderDate, day) == 0);
static_assert(offsetof(ReaderDate, month) == 4);
static_assert(offsetof(ReaderDate, year) == 8);
static_assert(sizeof(ReaderDate) == 12 && alignof(ReaderDate) == 1);

/// A part with this value marks a date of ReaderAamvaData as absent. Dates of
/// ReaderCodelineData are never marked.
inline constexpr std::int32_t ReaderDateAbsent = -1;

}  // namespace conduit
