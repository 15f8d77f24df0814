#pragma once

#include <array>
#include <vector>

namespace conduit {

/// A value along a row, as a polynomial of second degree in the column: lenses and
/// perspective bend rows and change their pitch.
struct RowCurve {
  std::array<double, 3> factors = {};

  double At(double column) const {
    return factors[0] + column * (factors[1] + column * factors[2]);
  }
  double SlopeAt(double column) const { return factors[1] + 2 * column * factors[2]; }
};

/// Points to which a curve is fitted; those of little weight count little.
struct CurvePoint {
  double column;
  double value;
  double weight;
};

/// The curve with the least squares.
RowCurve FitCurve(const std::vector<CurvePoint>& points);

}  // namespace conduit
