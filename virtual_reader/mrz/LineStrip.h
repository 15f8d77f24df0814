#pragma once

#include "virtual_reader/mrz/Chains.h"
#include "virtual_reader/mrz/Glyphs.h"
#include "virtual_reader/mrz/RowCurve.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Where the characters of a line stand, by their middles.
struct LineCourse {
  RowCurve x;
  RowCurve y;
};

/// How large the print is against what belongs to its pitch, how far its strokes lean
/// to the left for each step down, and how blurred it is.
struct PrintLook {
  double width = 1;
  double height = 1;
  double lean = 0;
  int blur = 1;
};

/// Columns of a strip before the first of the line, and behind its last.
inline constexpr int StripBefore = 5;

/// A line of a zone straightened out: level, of one pitch, with some room around it.
struct LineStrip {
  PageImage image;
  LineCourse course;  ///< on the strip
};

/// @param slant  how far the page leans: to the right for each step down
LineStrip Straighten(const PageImage& page, const TextRow& row, int columns, double slant);

/// The strip of the page laid on its head.
LineStrip UpsideDown(LineStrip strip);

CellInk InkAt(const LineStrip& strip, double column, const PrintLook& look);

}  // namespace conduit
