#pragma once

#include <chrono>
#include <cstdint>

namespace conduit {

/// How much processor time a page may take; the process that exceeds it is ended. Of the
/// processor and not of the clock, so that results do not depend on what else a machine does.
///
/// A page of 300 dpi takes a tenth of it at most, one of 100 million pixels a fifth.
struct PageBudget {
  /// To decode an image, or to list the pages of a TIFF. By the clock as well for the first
  /// answer of a process, for which the start of the reader waits.
  std::chrono::milliseconds decoding{10'000};

  /// To search an image, and beside it for each million pixels.
  std::chrono::milliseconds searching{5'000};
  std::chrono::milliseconds searchingMegapixel{500};

  std::chrono::milliseconds SearchingOf(std::int64_t pixels) const {
    return searching + searchingMegapixel * pixels / 1'000'000;
  }
};

/// A process that gets too little of the processor, or waits for a file, is ended after so
/// many times its budget by the clock.
inline constexpr int ClockFactor = 10;

}  // namespace conduit
