#include "virtual_reader/barcodes/GradientGrid.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace conduit {
namespace {

/// The side of a cell, in cells of the edges.
constexpr int EdgeCells = 2;

/// The grain of a scan is what an eighth of the squares stay below, of so many each way all
/// over the page: more than that is blank even of a dense page.
constexpr int GrainSamples = 24;
constexpr std::size_t BlankPart = 8;

Gradients GradientsIn(const PageImage& image, int left, int top, int size) {
  std::int32_t xx = 0;
  std::int32_t yy = 0;
  std::int32_t xy = 0;
  const int right = std::min(left + size, image.width - 1);
  const int bottom = std::min(top + size, image.height - 1);
  for (int y = std::max(1, top); y < bottom; ++y) {
    const std::uint8_t* const above = image.Row(y - 1);
    const std::uint8_t* const here = image.Row(y);
    const std::uint8_t* const below = image.Row(y + 1);
    for (int x = std::max(1, left); x < right; ++x) {
      const int dx = here[x + 1] - here[x - 1];
      const int dy = below[x] - above[x];
      xx += dx * dx;
      yy += dy * dy;
      xy += dx * dy;
    }
  }
  return {static_cast<float>(xx), static_cast<float>(yy), static_cast<float>(xy)};
}

/// Returns the energy of a square where nothing is printed.
float GrainOf(const PageImage& image, int size) {
  std::vector<float> energies;
  for (int row = 0; row < GrainSamples; ++row) {
    for (int column = 0; column < GrainSamples; ++column) {
      energies.push_back(GradientsIn(image, column * (image.width - size) / GrainSamples,
                                     row * (image.height - size) / GrainSamples, size)
                             .Energy());
    }
  }
  const auto low = energies.begin() + static_cast<std::ptrdiff_t>(energies.size() / BlankPart);
  std::nth_element(energies.begin(), low, energies.end());
  return *low;
}

/// Of each cell alone.
Grid<Gradients> FindOwnGradients(const PageImage& image, const EdgeGrid& edges) {
  Grid<Gradients> gradients(image, edges.size * EdgeCells);
  const float grain = GrainOf(image, gradients.size);
  for (int row = 0; row < gradients.rows; ++row) {
    for (int column = 0; column < gradients.columns; ++column) {
      bool any = false;
      for (int i = 0; i < EdgeCells * EdgeCells; ++i) {
        const int x = column * EdgeCells + i % EdgeCells;
        const int y = row * EdgeCells + i / EdgeCells;
        any = any || (edges.Has(x, y) && edges.At(x, y) != 0);
      }
      if (any) {
        gradients.At(column, row) =
            GradientsIn(image, column * gradients.size, row * gradients.size, gradients.size);
        gradients.At(column, row).Subtract(grain);
      }
    }
  }
  return gradients;
}

/// Adds up the cells beside each in its row or, else, above and below it.
Grid<Gradients> Spread(const Grid<Gradients>& from, bool across) {
  Grid<Gradients> to = from;
  for (int row = 0; row < from.rows; ++row) {
    for (int column = 0; column < from.columns; ++column) {
      Gradients sum;
      for (int step = -GradientReach; step <= GradientReach; ++step) {
        const int x = across ? column + step : column;
        const int y = across ? row : row + step;
        if (from.Has(x, y)) {
          sum.Add(from.At(x, y));
        }
      }
      to.At(column, row) = sum;
    }
  }
  return to;
}

}  // namespace

Grid<Gradients> FindGradients(const PageImage& image, const EdgeGrid& edges) {
  return Spread(Spread(FindOwnGradients(image, edges), true), false);
}

}  // namespace conduit
