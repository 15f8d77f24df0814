#include "virtual_reader/barcodes/BullsEyeFinder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <optional>

#include "virtual_reader/pixels/Sampling.h"

namespace conduit {
namespace {

/// Every so many rows of pixels are scanned: the core of a bull's eye has two at least.
constexpr int RowStep = 2;
/// More of them are a pattern, as of a chequered floor.
constexpr std::size_t MostBullsEyes = 32;
/// Two of them that are closer than this, in modules, are one.
constexpr double SameWithin = 3;
/// The band of hysteresis as a part of the page's contrast.
constexpr int BandsInRange = 12;

// What blur and a rotation of up to 45 degrees make of a ring that is one module wide,
// in modules; chosen on drawn pages.
constexpr double WidestRun = 1.6;
constexpr double NarrowestRun = 0.5;
constexpr double HeightTolerance = 1.5;
constexpr int SlackPixels = 1;
/// Edges from the centre of a bull's eye to one end of its squares.
constexpr int EdgesToTheEnd = 4;

EdgeCounter CounterFrom(const Contrast& contrast, int luminance) {
  return {contrast.Threshold(), contrast.Range() / BandsInRange, luminance < contrast.Threshold()};
}

/// The lengths of runs of dark and light pixels along a line, the latest of them.
class Runs {
 public:
  /// Adds a run that has ended.
  void Add(int length) {
    std::copy(lengths.begin() + 1, lengths.end(), lengths.begin());
    lengths.back() = length;
  }

  /// Returns the width of a module where the runs are alike, as those through a bull's eye
  /// are; else 0.
  double Module() const {
    const auto [shortest, longest] = std::minmax_element(lengths.begin(), lengths.end());
    // Blur widens light against dark or the other way round.
    return *shortest >= 2 && 2 * *longest <= 3 * *shortest + 3 ? Total() / double{BullsEyeModules}
                                                               : 0;
  }
  int Total() const { return std::accumulate(lengths.begin(), lengths.end(), 0); }

 private:
  std::array<int, BullsEyeModules> lengths{};
};

/// Returns the row in which the runs end that begin at a point and go up or down; nothing
/// where they are not those of a bull's eye.
std::optional<int> EndOfRuns(const PageImage& image, int x, int y, int step,
                             const Contrast& contrast, double module) {
  EdgeCounter counter = CounterFrom(contrast, SmoothedAt(image, x, y));
  int at = y;
  int start = y;
  for (int edges = 0; edges < EdgesToTheEnd;) {
    at += step;
    if (at < 1 || at + 1 >= image.height) {
      return {};
    }
    const int run = std::abs(at - start);
    const bool isEdge = counter.IsEdge(SmoothedAt(image, x, at));
    // The rest of the core may be next to nothing, or a whole module.
    if (run > WidestRun * module + SlackPixels ||
        (isEdge && edges > 0 && run < NarrowestRun * module)) {
      return {};
    }
    if (isEdge) {
      start = at;
      ++edges;
    }
  }
  return at;
}

/// Returns the row of the centre of a bull's eye that a row of pixels goes through; nothing
/// where the column of pixels shows none.
std::optional<double> CentreRow(const PageImage& image, int x, int y, const Contrast& contrast,
                                double module) {
  const std::optional<int> top = EndOfRuns(image, x, y, -1, contrast, module);
  const std::optional<int> bottom = top ? EndOfRuns(image, x, y, 1, contrast, module) : top;
  if (!bottom || std::abs(*bottom - *top - BullsEyeModules * module) > HeightTolerance * module) {
    return {};
  }
  return (double{1} * *top + *bottom) / 2;
}

/// Returns the angle of squares within each other: an eighth turn at most, as their sides are
/// all alike.
double AngleOfSquares(const PageImage& image, const RotatedRectangle& squares) {
  const Rectangle area = squares.Bounds();
  const int right = std::min(image.width - 1, area.Right());
  const int bottom = std::min(image.height - 1, area.Bottom());
  // The fourth power of a gradient (Scharr) points the same way for all four sides.
  std::complex<double> sum;
  for (int y = std::max(1, area.top); y < bottom; ++y) {
    const std::uint8_t* const above = image.Row(y - 1);
    const std::uint8_t* const here = image.Row(y);
    const std::uint8_t* const below = image.Row(y + 1);
    for (int x = std::max(1, area.left); x < right; ++x) {
      const auto step = [x](const std::uint8_t* row) { return row[x + 1] - row[x - 1]; };
      const auto smoothed = [x](const std::uint8_t* row) {
        return 3 * row[x - 1] + 10 * row[x] + 3 * row[x + 1];
      };
      const std::complex<double> gradient(3 * step(above) + 10 * step(here) + 3 * step(below),
                                          smoothed(below) - smoothed(above));
      const std::complex<double> square = gradient * gradient;
      sum += square * square;
    }
  }
  return std::arg(sum) / 4;
}

bool IsKnown(const std::vector<SymbolCandidate>& found, Point centre, double module) {
  return std::any_of(found.begin(), found.end(), [&](const SymbolCandidate& other) {
    return std::hypot(other.region.centre.x - centre.x, other.region.centre.y - centre.y) <
           SameWithin * module;
  });
}

}  // namespace

std::vector<SymbolCandidate> FindBullsEyes(const PageImage& image, const Rectangle& printed,
                                           const Contrast& contrast) {
  std::vector<SymbolCandidate> found;
  const int left = std::max(1, printed.left);
  const int right = std::min(image.width - 1, printed.Right());
  const int bottom = std::min(image.height - 1, printed.Bottom());
  if (left >= right) {
    return found;  // too narrow for a pixel with one on each side of it
  }
  for (int y = std::max(1, printed.top); y < bottom && found.size() < MostBullsEyes; y += RowStep) {
    Runs runs;
    EdgeCounter counter = CounterFrom(contrast, SmoothedAt(image, left, y));
    int start = left;
    for (int x = left; x < right && found.size() < MostBullsEyes; ++x) {
      if (!counter.IsEdge(SmoothedAt(image, x, y))) {
        continue;
      }
      runs.Add(x - start);
      start = x;
      const double module = runs.Module();
      if (module == 0) {
        continue;
      }
      const int column = x - runs.Total() / 2;
      const auto row = CentreRow(image, column, y, contrast, module);
      if (row && !IsKnown(found, {double(column), *row}, module)) {
        const double side = BullsEyeModules * module;
        RotatedRectangle squares = {{double(column), *row}, side, side, 0};
        squares.angle = AngleOfSquares(image, squares);
        // Four runs lie between the centre and the pixel that has just begun, so that
        // both are of one shade.
        found.push_back({squares, !counter.IsDark()});
      }
    }
  }
  return found;
}

}  // namespace conduit
