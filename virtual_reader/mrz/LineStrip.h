#pragma once

#include "virtual_reader/mrz/Glyphs.h"
#include "virtual_reader/mrz/LineCurve.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// How print differs from the typeface at the line's pitch.
struct PrintShape {
  double width = 1;   ///< a factor
  double height = 1;  ///< a factor
  double slant = 0;   ///< of the strokes: pitches to the left for each one down
  int blur = 1;       ///< an index of degrees: see BlurCount
};

/// Columns of a strip before the first of the line, and after its last.
inline constexpr int StripMargin = 5;

/// A line of an MRZ, rectified: level, of one pitch, with some room around it.
struct LineStrip {
  PageImage image;
  LineCourse course;  ///< on the strip
};

/// @param skew  how far the page is sheared: pixels to the right for each one down
LineStrip Rectify(const PageImage& page, const TextLine& line, int columns, double skew);

/// The strip of the page rotated by half a turn.
LineStrip UpsideDown(LineStrip strip);

/// Samples the cell of a column.
CellInk InkAt(const LineStrip& strip, double column, const PrintShape& shape);

}  // namespace conduit
