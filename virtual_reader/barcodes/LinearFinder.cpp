#include "virtual_reader/barcodes/LinearFinder.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <numbers>
#include <utility>

#include "virtual_reader/barcodes/GradientGrid.h"
#include "virtual_reader/pixels/Sampling.h"

namespace conduit {
namespace {

// Thresholds without a source of their own were chosen on pages of tests/virtual_reader/pages/
// draw-pages; docs/performance.md has what is found of them.

/// Coherence of a cell with bars: text has edges in all directions.
constexpr float LeastCoherence = 0.3F;
/// The mean gradient of a cell with bars, as a part of the page's contrast: many edges, not the
/// one at the rim of something.
constexpr float GradientsInContrast = 5;
/// Radians between the directions of a cell and of its region.
constexpr double MostTurnOfCell = 0.2;
constexpr std::size_t FewestCells = 12;
/// The part of a region's rectangle that its cells cover.
constexpr double LeastCovered = 0.5;

/// Radians between two parts of a symbol.
constexpr double MostTurnOfParts = 0.12;
/// The part of their common rectangle that both cover: words beside each other cover less.
constexpr double LeastCoveredByParts = 0.7;
/// Cells of the gradients between two parts: a wide bar, a scratch or a fold.
constexpr double WidestGapInCells = 3;

/// The shortest symbols, two digits of ITF or a PDF417 of one column, have some 30 bars and
/// spaces of two pixels and more. A word has fewer.
constexpr double LeastWidth = 50;
constexpr int FewestEdges = 20;
/// Lines across the bars on which edges are counted; the median counts.
constexpr int EdgeLines = 27;
/// Lines across the bars whose luminance is summed up along them.
constexpr int SharpnessLines = 32;

/// The direction of gradients is a few degrees off where modules are small, as the grid of
/// pixels has directions of its own. So many steps to each side are tried, in degrees.
constexpr int AngleSteps = 4;
constexpr double CoarseStep = 1;
constexpr double FineStep = 0.25;

/// Places at each end of the bars, over the central part of its height, where the quiet
/// zone is sampled.
constexpr int QuietZoneSamples = 9;
constexpr double SampledPart = 0.8;

/// The difference of two rows of pixels through one symbol, as a part of its contrast.
constexpr int DifferencesInContrast = 5;

double TurnBetween(double a, double b) { return std::abs(std::remainder(a - b, std::numbers::pi)); }

/// Cells with bars of one direction that touch each other.
struct BarCells {
  Gradients sum;
  std::vector<std::pair<int, int>> cells;
};

/// Grows a region from a cell, and takes its cells out of the barred ones.
BarCells TakeParallel(int column, int row, const Grid<Gradients>& gradients, EdgeGrid* barred) {
  BarCells bars = {{}, {{column, row}}};
  barred->At(column, row) = 0;
  for (std::size_t next = 0; next < bars.cells.size(); ++next) {
    const std::pair<int, int> cell = bars.cells[next];
    bars.sum.Add(gradients.At(cell.first, cell.second));
    barred->EachNeighbour(cell.first, cell.second, [&](int x, int y) {
      if (barred->At(x, y) != 0 &&
          TurnBetween(gradients.At(x, y).Angle(), bars.sum.Angle()) < MostTurnOfCell) {
        barred->At(x, y) = 0;
        bars.cells.emplace_back(x, y);
      }
    });
  }
  return bars;
}

/// Returns the smallest rectangle of an angle around points.
RotatedRectangle RectangleAround(const std::vector<Point>& points, double angle, double margin) {
  const RotatedAxes axes({0, 0}, angle);
  Point low = {1e9, 1e9};
  Point high = {-1e9, -1e9};
  for (const Point& point : points) {
    const auto [u, v] = axes.FromPage(point);
    low = {std::min(low.x, u), std::min(low.y, v)};
    high = {std::max(high.x, u), std::max(high.y, v)};
  }
  return {axes.ToPage((low.x + high.x) / 2, (low.y + high.y) / 2), high.x - low.x + 2 * margin,
          high.y - low.y + 2 * margin, angle};
}

/// Returns whether one goes on where the other ends, in the same direction.
bool AreParts(const RotatedRectangle& a, const RotatedRectangle& b, double gap) {
  if (TurnBetween(a.angle, b.angle) > MostTurnOfParts) {
    return false;
  }
  const auto [along, across] = a.Axes().FromPage(b.centre);
  return std::abs(along) < (a.width + b.width) / 2 + gap &&
         std::abs(across) < (a.height + b.height) / 2;
}

RotatedRectangle Union(const RotatedRectangle& a, const RotatedRectangle& b) {
  std::vector<Point> corners;
  for (const RotatedRectangle& one : {a, b}) {
    const RotatedAxes axes = one.Axes();
    for (const double u : {-one.width / 2, one.width / 2}) {
      for (const double v : {-one.height / 2, one.height / 2}) {
        corners.push_back(axes.ToPage(u, v));
      }
    }
  }
  return RectangleAround(corners, b.Area() > a.Area() ? b.angle : a.angle, 0);
}

std::vector<RotatedRectangle> JoinParts(std::vector<RotatedRectangle> regions, double gap) {
  for (std::size_t i = 0; i < regions.size(); ++i) {
    for (std::size_t other = i + 1; other < regions.size();) {
      if (AreParts(regions[i], regions[other], gap)) {
        const RotatedRectangle both = Union(regions[i], regions[other]);
        if (regions[i].Area() + regions[other].Area() >= LeastCoveredByParts * both.Area()) {
          regions[i] = both;
          regions.erase(regions.begin() + static_cast<std::ptrdiff_t>(other));
          other = i + 1;
          continue;
        }
      }
      ++other;
    }
  }
  return regions;
}

/// Returns where a line crosses a region, one of so many, as an offset across it.
double OffsetOfLine(const RotatedRectangle& region, int line, int count) {
  return ((line + 0.5) / count - 0.5) * region.height;
}

int EdgesAcross(const PageImage& image, const RotatedRectangle& region) {
  const RotatedAxes axes = region.Axes();
  const auto eachPixel = [&](auto&& visit) {
    for (int line = 0; line < EdgeLines; ++line) {
      const double v = OffsetOfLine(region, line, EdgeLines);
      for (int i = 0; i < static_cast<int>(region.width); ++i) {
        if (const auto luminance = PixelAt(image, axes.ToPage(i - region.width / 2, v))) {
          visit(line, *luminance);
        }
      }
    }
  };
  Contrast contrast;
  eachPixel([&](int /*line*/, int luminance) { contrast.Add(luminance); });
  return MedianEdgeCount<EdgeLines>(contrast, eachPixel);
}

/// Returns how clearly bars stand out when luminance is summed up along them, if they had the
/// region's angle.
double SharpnessOf(const PageImage& image, const RotatedRectangle& region) {
  const RotatedAxes axes = region.Axes();
  double sharpness = 0;
  double before = 0;
  for (int i = 0; i < static_cast<int>(region.width); ++i) {
    const double u = i - region.width / 2;
    double sum = 0;
    for (int line = 0; line < SharpnessLines; ++line) {
      sum +=
          PixelAt(image, axes.ToPage(u, OffsetOfLine(region, line, SharpnessLines))).value_or(255);
    }
    sharpness += (sum - before) * (sum - before);
    before = sum;
  }
  return sharpness;
}

/// Returns the angle at which bars in the region are clearest, of those around its own.
/// @param step  between two angles, in degrees
double ClearestAngle(const PageImage& image, RotatedRectangle region, double step) {
  constexpr double degree = std::numbers::pi / 180;
  const double own = region.angle;
  double best = own;
  double clearest = -1;
  for (int turn = -AngleSteps; turn <= AngleSteps; ++turn) {
    region.angle = own + turn * step * degree;
    if (const double sharpness = SharpnessOf(image, region); sharpness > clearest) {
      clearest = sharpness;
      best = region.angle;
    }
  }
  return best;
}

/// Returns whether both ends of the bars are rather dark, where the quiet zone is.
bool IsInverted(const PageImage& image, const RotatedRectangle& region, const Contrast& contrast) {
  const RotatedAxes axes = region.Axes();
  int dark = 0;
  int seen = 0;
  for (const double end : {-0.5, 0.5}) {
    for (int i = 0; i < QuietZoneSamples; ++i) {
      const double v = OffsetOfLine(region, i, QuietZoneSamples) * SampledPart;
      if (const auto luminance = PixelAt(image, axes.ToPage(end * region.width, v))) {
        dark += *luminance < contrast.Threshold() ? 1 : 0;
        ++seen;
      }
    }
  }
  return dark * 2 > seen;
}

/// Returns 1 for each cell with bars around it.
EdgeGrid FindBarred(const PageImage& image, const Grid<Gradients>& gradients,
                    const Contrast& contrast) {
  constexpr int cells = (2 * GradientReach + 1) * (2 * GradientReach + 1);
  const float step = static_cast<float>(contrast.Range()) / GradientsInContrast;
  const float leastEnergy =
      step * step * static_cast<float>(gradients.size * gradients.size * cells);
  EdgeGrid barred(image, gradients.size);
  for (std::size_t i = 0; i < barred.values.size(); ++i) {
    const Gradients& around = gradients.values[i];
    barred.values[i] =
        around.Energy() >= leastEnergy && around.Coherence() >= LeastCoherence ? 1 : 0;
  }
  return barred;
}

std::vector<RotatedRectangle> FindBarRegions(const Grid<Gradients>& gradients, EdgeGrid barred) {
  std::vector<RotatedRectangle> regions;
  for (int row = 0; row < barred.rows; ++row) {
    for (int column = 0; column < barred.columns; ++column) {
      if (barred.At(column, row) == 0) {
        continue;
      }
      const BarCells bars = TakeParallel(column, row, gradients, &barred);
      if (bars.cells.size() < FewestCells) {
        continue;
      }
      std::vector<Point> centres;
      for (const auto& [x, y] : bars.cells) {
        centres.push_back({(x + 0.5) * gradients.size, (y + 0.5) * gradients.size});
      }
      const RotatedRectangle region = RectangleAround(centres, bars.sum.Angle(), gradients.size);
      const double cellArea = double{1} * gradients.size * gradients.size;
      if (static_cast<double>(bars.cells.size()) * cellArea >= LeastCovered * region.Area()) {
        regions.push_back(region);
      }
    }
  }
  return regions;
}

}  // namespace

std::vector<SymbolCandidate> FindLinearSymbols(const PageImage& image, const EdgeGrid& edges,
                                               const Contrast& contrast) {
  const Grid<Gradients> gradients = FindGradients(image, edges);
  std::vector<RotatedRectangle> regions =
      FindBarRegions(gradients, FindBarred(image, gradients, contrast));
  std::vector<SymbolCandidate> candidates;
  for (RotatedRectangle& region :
       JoinParts(std::move(regions), WidestGapInCells * gradients.size)) {
    if (region.width >= LeastWidth && EdgesAcross(image, region) >= FewestEdges) {
      region.angle = ClearestAngle(image, region, CoarseStep);
      region.angle = ClearestAngle(image, region, FineStep);
      candidates.push_back({region, IsInverted(image, region, contrast)});
    }
  }
  return candidates;
}

Rectangle WholeLinearSymbol(const PageImage& page, const Rectangle& line) {
  const bool level = line.width >= line.height;
  const int start = std::max(1, level ? line.left : line.top);
  const int end = level ? std::min(page.width, line.Right()) : std::min(page.height, line.Bottom());
  const auto luminance = [&](int along, int across) {
    return int{level ? page.Row(across)[along] : page.Row(along)[across]};
  };
  const int last = (level ? page.height : page.width) - 1;
  int low = std::clamp(level ? line.top : line.left, 0, last);
  int high = std::clamp((level ? line.Bottom() : line.Right()) - 1, low, last);
  Contrast contrast;
  for (int along = start; along < end; ++along) {
    contrast.Add(luminance(along, low));
  }
  const auto alike = [&](int across, int next) {
    // Bars that are not upright are a pixel further on in the next row.
    for (const int shift : {0, -1, 1}) {
      int difference = 0;
      for (int along = start; along + 1 < end; ++along) {
        difference += std::abs(luminance(along, across) - luminance(along + shift, next));
      }
      if (difference * DifferencesInContrast < (end - start) * contrast.Range()) {
        return true;
      }
    }
    return false;
  };
  while (low > 0 && alike(low, low - 1)) {
    --low;
  }
  while (high < last && alike(high, high + 1)) {
    ++high;
  }
  const int thickness = high - low + 1;
  return level ? Rectangle{line.left, low, line.width, thickness}
               : Rectangle{low, line.top, thickness, line.height};
}

}  // namespace conduit
