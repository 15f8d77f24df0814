#pragma once

#include <vector>

#include "virtual_reader/mrz/Marks.h"
#include "virtual_reader/mrz/RowCurve.h"

namespace conduit {

/// Marks beside each other, with what fits them as a row of one pitch.
struct Chain {
  std::vector<Mark> marks;  ///< by x
  double offset = 0;        ///< y = offset + slope x
  double slope = 0;
  double pitch = 0;
  double evenness = 0;  ///< 1: at a whole number of pitches from each other; 0: anywhere
  double size = 0;

  double Left() const { return marks.front().x; }
  double Right() const { return marks.back().x; }
  double At(double x) const { return offset + slope * x; }
};

/// The marks of a chain as a row of characters.
struct TextRow {
  RowCurve x;  ///< of the middles of its characters
  RowCurve y;
  double size;  ///< the typical extent of its marks across the row
  int columns;
};

/// Counts the columns from mark to mark, so that a pitch that changes along the row
/// does no harm.
TextRow RowOf(const Chain& chain);

/// The chains of evenly spaced marks that run from left to right, pieces of one row
/// joined.
std::vector<Chain> FindChains(std::vector<Mark> marks);

}  // namespace conduit
