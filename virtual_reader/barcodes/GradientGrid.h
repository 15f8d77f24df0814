#pragma once

#include <algorithm>
#include <cmath>

#include "virtual_reader/barcodes/EdgeGrid.h"

namespace conduit {

/// The structure tensor of some pixels: the sums of the products of the gradient's parts,
/// which tell the direction that the edges there have in common.
struct Gradients {
  float xx = 0;
  float yy = 0;
  float xy = 0;

  void Add(const Gradients& other) {
    xx += other.xx;
    yy += other.yy;
    xy += other.xy;
  }
  /// Subtracts the energy that the grain of a scan has in all directions.
  void Subtract(float grain) {
    xx = std::max(0.0F, xx - grain / 2);
    yy = std::max(0.0F, yy - grain / 2);
  }
  float Energy() const { return xx + yy; }

  /// From 0, edges in all directions, to 1, in one.
  float Coherence() const { return Energy() > 0 ? std::hypot(xx - yy, 2 * xy) / Energy() : 0; }
  /// In radians, clockwise from the row; of a half turn.
  float Angle() const { return std::atan2(2 * xy, xx - yy) / 2; }
};

/// Cells to each side whose gradients count for a cell: as many as hold a few bars.
inline constexpr int GradientReach = 2;

/// Returns the gradients around each cell of twice two edge cells; none where no edge is.
Grid<Gradients> FindGradients(const PageImage& image, const EdgeGrid& edges);

}  // namespace conduit
