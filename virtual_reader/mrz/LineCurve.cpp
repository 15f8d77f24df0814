#include "virtual_reader/mrz/LineCurve.h"

#include <cstddef>

namespace conduit {

LineCurve FitCurve(const std::vector<CurvePoint>& points) {
  // The normal equations, solved by Gauss and Jordan.
  double equations[3][4] = {};
  for (const CurvePoint& point : points) {
    const double powers[] = {1, point.column, point.column * point.column};
    for (int row = 0; row < 3; ++row) {
      for (int i = 0; i < 3; ++i) {
        equations[row][i] += point.weight * powers[row] * powers[i];
      }
      equations[row][3] += point.weight * powers[row] * point.value;
    }
  }
  constexpr double notZero = 1e-9;
  for (int row = 0; row < 3; ++row) {
    equations[row][row] += notZero;
  }
  for (int row = 0; row < 3; ++row) {
    for (int other = 0; other < 3; ++other) {
      const double factor = equations[other][row] / equations[row][row];
      for (int i = 0; other != row && i < 4; ++i) {
        equations[other][i] -= factor * equations[row][i];
      }
    }
  }
  LineCurve curve;
  for (std::size_t i = 0; i < 3; ++i) {
    curve.factors[i] = equations[i][3] / equations[i][i];
  }
  return curve;
}

}  // namespace conduit
