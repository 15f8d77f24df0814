#include "virtual_reader/barcodes/EdgeGrid.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace conduit {
namespace {

/// The shorter side of a page, in pixels, from which on cells are twice as large: a page of
/// more pixels has larger symbols, not more of them.
constexpr int LargePage = 3000;
constexpr int CellSize = 4;  // pixels: two modules of the smallest symbols that the decoder reads

/// The part of the page's contrast that an edge has at least; blur leaves a module of two
/// pixels that much.
constexpr int EdgeOfContrast = 4;

/// Cells around the print. A linear symbol has a quiet zone of ten modules at each end (ISO/IEC
/// 15417): with four pixels to a cell this is enough for modules of eight.
constexpr int QuietZoneCells = 20;

/// The contrast of each column of pixels, two by two, within a row of cells. Apart, so that
/// the compiler compares several at once.
class ColumnContrasts {
 public:
  explicit ColumnContrasts(int width)
      : darkest(static_cast<std::size_t>(width)), lightest(darkest.size()) {}

  void Restart() {
    std::fill(darkest.begin(), darkest.end(), std::uint8_t{255});
    std::fill(lightest.begin(), lightest.end(), std::uint8_t{0});
  }

  void AddRows(const std::uint8_t* upper, const std::uint8_t* lower) {
    for (std::size_t x = 0; x < darkest.size(); ++x) {
      const auto mean = static_cast<std::uint8_t>(
          (upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1]) / 4);
      darkest[x] = std::min(darkest[x], mean);
      lightest[x] = std::max(lightest[x], mean);
    }
  }

  int RangeOf(int from, int to) const {
    Contrast all;
    for (int x = from; x < to; ++x) {
      all.darkest = std::min<int>(all.darkest, darkest[static_cast<std::size_t>(x)]);
      all.lightest = std::max<int>(all.lightest, lightest[static_cast<std::size_t>(x)]);
    }
    return all.Range();
  }

 private:
  std::vector<std::uint8_t> darkest;
  std::vector<std::uint8_t> lightest;
};

}  // namespace

EdgeGrid FindEdges(const PageImage& image, const Contrast& contrast) {
  const bool isLarge = std::min(image.width, image.height) >= LargePage;
  EdgeGrid edges(image, isLarge ? 2 * CellSize : CellSize);
  const int leastStep = contrast.Range() / EdgeOfContrast;
  const int halves = edges.size / 2;
  const int width = image.width / 2;
  ColumnContrasts contrasts(width);
  for (int row = 0; row < edges.rows; ++row) {
    contrasts.Restart();
    // One more line than the cell has, for an edge between it and the next.
    for (int line = 0; line <= halves; ++line) {
      const int y = row * edges.size + 2 * line;
      if (y + 1 >= image.height) {
        break;
      }
      contrasts.AddRows(image.Row(y), image.Row(y + 1));
    }
    for (int column = 0; column < edges.columns; ++column) {
      const int end = std::min(width, column * halves + halves + 1);
      edges.At(column, row) = contrasts.RangeOf(column * halves, end) >= leastStep ? 1 : 0;
    }
  }
  return edges;
}

Rectangle PrintedBounds(const EdgeGrid& edges, const PageImage& image) {
  BoundsOfPixels bounds;
  for (int row = 0; row < edges.rows; ++row) {
    for (int column = 0; column < edges.columns; ++column) {
      if (edges.At(column, row) != 0) {
        bounds.Add(column, row);
      }
    }
  }
  return bounds.IsEmpty() ? Rectangle{} : edges.Pixels(bounds.Get(), image, QuietZoneCells);
}

}  // namespace conduit
