#pragma once

#include <algorithm>
#include <cstddef>

namespace conduit {

/// Returns the median, of an even number of values the higher one. Requires a value.
template <typename Values>
auto Median(Values values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace conduit
