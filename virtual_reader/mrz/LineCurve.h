#pragma once

#include <array>
#include <cmath>
#include <vector>

#include "virtual_reader/pixels/Geometry.h"

namespace conduit {

/// A value along a line of text, as a polynomial of second degree in the column: lenses and
/// perspective bend lines and change their pitch.
struct LineCurve {
  std::array<double, 3> factors = {};

  double At(double column) const {
    return factors[0] + column * (factors[1] + column * factors[2]);
  }
  double SlopeAt(double column) const { return factors[1] + 2 * column * factors[2]; }

  /// The same curve, with this column as its first.
  LineCurve From(double column) const { return {{At(column), SlopeAt(column), factors[2]}}; }
};

/// Points to which a curve is fitted; those of little weight count little.
struct CurvePoint {
  double column;
  double value;
  double weight;
};

/// Returns the curve with the least squares.
LineCurve FitCurve(const std::vector<CurvePoint>& points);

/// Where the centres of a line's characters are.
struct LineCourse {
  LineCurve x;
  LineCurve y;

  Point At(double column) const { return {x.At(column), y.At(column)}; }
  /// From one column to the next.
  Point StepAt(double column) const { return {x.SlopeAt(column), y.SlopeAt(column)}; }
  double PitchAt(double column) const { return std::hypot(x.SlopeAt(column), y.SlopeAt(column)); }
  LineCourse From(double column) const { return {x.From(column), y.From(column)}; }
};

/// A line of text on a page.
struct TextLine {
  LineCourse course;
  double glyphHeight;  ///< the median, in pixels
  int columns;

  double Centre() const { return columns / 2.0; }
};

}  // namespace conduit
