#include "virtual_reader/barcodes/MatrixFinder.h"

#include <algorithm>
#include <cstdint>

#include "virtual_reader/pixels/Components.h"

namespace conduit {
namespace {

/// Pixels along the shorter side: the smallest Data Matrix has eight modules there (ISO/IEC
/// 16022, table 7), of two pixels each at least; cells round up.
constexpr int FewestPixels = 18;
/// The longer side against the shorter: the most elongated Data Matrix has 8 x 32 modules
/// (ISO/IEC 16022, table 7), and cells round both.
constexpr int MostElongated = 5;
/// Edges on the median line, each way and both together: letters have fewer.
constexpr int FewestEdges = 4;
constexpr int FewestEdgesOfBoth = 10;
/// Lines through the region, each way, of which the median counts.
constexpr int Lines = 9;

/// What lines through a region show.
struct LineProfile {
  int edgesAcross;  ///< on the median line from left to right
  int edgesDown;    ///< on that from top to bottom
  bool inverted;    ///< the outermost pixels are rather dark
};

LineProfile ProfileOf(const PageImage& image, const Rectangle& area) {
  const auto luminance = [&](int x, int y) { return int{image.Row(area.top + y)[area.left + x]}; };
  const auto eachAcross = [&](auto&& visit) {
    for (int line = 0; line < Lines; ++line) {
      for (int x = 0; x < area.width; ++x) {
        visit(line, luminance(x, (line + 1) * area.height / (Lines + 1)));
      }
    }
  };
  const auto eachDown = [&](auto&& visit) {
    for (int line = 0; line < Lines; ++line) {
      for (int y = 0; y < area.height; ++y) {
        visit(line, luminance((line + 1) * area.width / (Lines + 1), y));
      }
    }
  };
  Contrast contrast;
  eachAcross([&](int /*line*/, int value) { contrast.Add(value); });
  std::int64_t border = 0;
  for (int x = 0; x < area.width; ++x) {
    border += luminance(x, 0) + luminance(x, area.height - 1) - 2 * contrast.Threshold();
  }
  for (int y = 0; y < area.height; ++y) {
    border += luminance(0, y) + luminance(area.width - 1, y) - 2 * contrast.Threshold();
  }
  return {MedianEdgeCount<Lines>(contrast, eachAcross), MedianEdgeCount<Lines>(contrast, eachDown),
          border < 0};
}

}  // namespace

std::vector<SymbolCandidate> FindMatrixSymbols(const PageImage& image, const EdgeGrid& edges) {
  ComponentLabelling labelling;
  for (int row = 0; row < edges.rows; ++row) {
    labelling.AddRow(&edges.At(0, row), edges.columns);
  }
  std::vector<SymbolCandidate> candidates;
  for (const Component& component : labelling.Take()) {
    const auto [shorter, longer] = std::minmax(component.bounds.width, component.bounds.height);
    if (shorter * edges.size < FewestPixels || longer > shorter * MostElongated) {
      continue;
    }
    const Rectangle area = edges.Pixels(component.bounds, image, 1);
    const LineProfile profile = ProfileOf(image, area);
    if (std::min(profile.edgesAcross, profile.edgesDown) >= FewestEdges &&
        profile.edgesAcross + profile.edgesDown >= FewestEdgesOfBoth) {
      candidates.push_back({Upright(area), profile.inverted});
    }
  }
  return candidates;
}

}  // namespace conduit
