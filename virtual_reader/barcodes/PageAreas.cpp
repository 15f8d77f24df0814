#include "virtual_reader/barcodes/PageAreas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <numbers>
#include <numeric>
#include <optional>
#include <utility>

namespace conduit {
namespace {

/// A page in square cells of equal size, with a value for each.
template <typename Value>
struct Cells {
  int size;  ///< of a cell, in pixels
  int columns;
  int rows;
  std::vector<Value> values;

  Cells(const PageImage& image, int cellSize)
      : size(cellSize),
        columns((image.width + cellSize - 1) / cellSize),
        rows((image.height + cellSize - 1) / cellSize),
        values(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)) {}

  bool Has(int column, int row) const {
    return column >= 0 && row >= 0 && column < columns && row < rows;
  }
  Value& At(int column, int row) { return values[Index(column, row)]; }
  const Value& At(int column, int row) const { return values[Index(column, row)]; }

  /// The pixels of these cells, and of some more to each side.
  PageArea Pixels(const PageArea& cells, const PageImage& image, int margin) const {
    const int left = std::max(0, (cells.left - margin) * size);
    const int top = std::max(0, (cells.top - margin) * size);
    return {left, top, std::min(image.width, (cells.left + cells.width + margin) * size) - left,
            std::min(image.height, (cells.top + cells.height + margin) * size) - top};
  }

 private:
  std::size_t Index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
           static_cast<std::size_t>(column);
  }
};

/// Grows with the cells that are put into it.
struct Extent {
  int left;
  int top;
  int right;
  int bottom;

  explicit Extent(int column, int row) : left(column), top(row), right(column), bottom(row) {}

  void Add(int column, int row) {
    left = std::min(left, column);
    right = std::max(right, column);
    top = std::min(top, row);
    bottom = std::max(bottom, row);
  }
  PageArea Area() const { return {left, top, right - left + 1, bottom - top + 1}; }
};

const std::uint8_t* Row(const PageImage& image, int y) {
  return image.light.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width);
}

/// The light values between which nearly all of a page lies.
struct Contrast {
  int dark;
  int light;

  int Range() const { return light - dark; }
};

Contrast ContrastOf(const PageImage& image) {
  std::array<int, 256> counts{};
  int total = 0;
  for (int y = 0; y < image.height; y += 3) {
    const std::uint8_t* const row = Row(image, y);
    for (int x = y % 5; x < image.width; x += 5) {
      ++counts[row[x]];
      ++total;
    }
  }
  const int least = total / 500;  // a small symbol covers a fraction of the page
  Contrast contrast = {0, 255};
  for (int seen = 0; contrast.dark < 255; ++contrast.dark) {
    seen += counts[static_cast<std::size_t>(contrast.dark)];
    if (seen > least) {
      break;
    }
  }
  for (int seen = 0; contrast.light > contrast.dark; --contrast.light) {
    seen += counts[static_cast<std::size_t>(contrast.light)];
    if (seen > least) {
      break;
    }
  }
  return contrast;
}

/// Marks the cells that an edge between dark and light runs through. Of two by two
/// pixels the mean counts, which keeps the grain of a scan from being an edge.
Cells<std::uint8_t> FindEdges(const PageImage& image, int cellSize, int leastStep) {
  Cells<std::uint8_t> edges(image, cellSize);
  const int halves = cellSize / 2;
  const int width = image.width / 2;
  std::vector<std::uint8_t> low(static_cast<std::size_t>(width));
  std::vector<std::uint8_t> high(low.size());
  for (int row = 0; row < edges.rows; ++row) {
    std::fill(low.begin(), low.end(), std::uint8_t{255});
    std::fill(high.begin(), high.end(), std::uint8_t{0});
    // One more line than the cell has, for an edge between it and the next.
    for (int line = 0; line <= halves; ++line) {
      const int y = row * cellSize + 2 * line;
      if (y + 1 >= image.height) {
        break;
      }
      const std::uint8_t* const upper = Row(image, y);
      const std::uint8_t* const lower = Row(image, y + 1);
      for (int x = 0; x < width; ++x) {
        const auto at = static_cast<std::size_t>(x);
        const auto mean = static_cast<std::uint8_t>(
            (upper[2 * at] + upper[2 * at + 1] + lower[2 * at] + lower[2 * at + 1]) / 4);
        low[at] = std::min(low[at], mean);
        high[at] = std::max(high[at], mean);
      }
    }
    for (int column = 0; column < edges.columns; ++column) {
      int lowest = 255;
      int highest = 0;
      const int end = std::min(width, column * halves + halves + 1);
      for (int x = column * halves; x < end; ++x) {
        lowest = std::min<int>(lowest, low[static_cast<std::size_t>(x)]);
        highest = std::max<int>(highest, high[static_cast<std::size_t>(x)]);
      }
      edges.At(column, row) = highest - lowest >= leastStep ? 1 : 0;
    }
  }
  return edges;
}

/// Takes a cell and all marked ones that it touches, corners included, out of the
/// cells. The area of cells that they cover.
PageArea TakeConnected(int column, int row, Cells<std::uint8_t>* cells) {
  Extent extent(column, row);
  std::vector<std::pair<int, int>> open = {{column, row}};
  cells->At(column, row) = 0;
  while (!open.empty()) {
    const auto [x, y] = open.back();
    open.pop_back();
    extent.Add(x, y);
    for (int dy = -1; dy <= 1; ++dy) {
      for (int dx = -1; dx <= 1; ++dx) {
        if (cells->Has(x + dx, y + dy) && cells->At(x + dx, y + dy) != 0) {
          cells->At(x + dx, y + dy) = 0;
          open.emplace_back(x + dx, y + dy);
        }
      }
    }
  }
  return extent.Area();
}

PageArea ExtentOfMarked(const Cells<std::uint8_t>& cells, const PageImage& image) {
  Extent extent(cells.columns, cells.rows);
  extent.right = -1;
  extent.bottom = -1;
  for (int row = 0; row < cells.rows; ++row) {
    for (int column = 0; column < cells.columns; ++column) {
      if (cells.At(column, row) != 0) {
        extent.Add(column, row);
      }
    }
  }
  constexpr int margin = 20;  // a linear symbol is none without ten light modules beside it
  return extent.right < 0 ? PageArea{} : cells.Pixels(extent.Area(), image, margin);
}

/// What an area shows on lines through it.
struct Look {
  int crossings;      ///< between dark and light, along a line in the middle of all
  int crossingsDown;  ///< the same for lines from top to bottom
  bool inverted;      ///< its outermost pixels are rather dark
};

Look LookAt(const PageImage& image, const PageArea& area) {
  constexpr int lines = 9;
  const auto light = [&](int x, int y) { return int{Row(image, area.top + y)[area.left + x]}; };
  int lowest = 255;
  int highest = 0;
  const auto eachLine = [&](int length, int across, auto&& see) {
    for (int line = 0; line < lines; ++line) {
      const int at = (line + 1) * across / (lines + 1);
      for (int i = 0; i < length; ++i) {
        see(line, i, at);
      }
    }
  };
  eachLine(area.width, area.height, [&](int /*line*/, int x, int y) {
    lowest = std::min(lowest, light(x, y));
    highest = std::max(highest, light(x, y));
  });
  // A band in the middle counts for neither side: blur and noise cross it at will.
  const int threshold = (lowest + highest) / 2;
  const int band = (highest - lowest) / 10;
  const auto median = [&](int length, int across, auto&& at) {
    std::array<int, lines> counts{};
    std::array<bool, lines> dark{};
    eachLine(length, across, [&](int line, int i, int other) {
      const auto index = static_cast<std::size_t>(line);
      const int value = at(i, other);
      if (dark[index] ? value > threshold + band : value < threshold - band) {
        dark[index] = !dark[index];
        ++counts[index];
      }
    });
    std::nth_element(counts.begin(), counts.begin() + lines / 2, counts.end());
    return counts[lines / 2];
  };
  std::int64_t border = 0;
  for (int x = 0; x < area.width; ++x) {
    border += light(x, 0) + light(x, area.height - 1) - 2 * threshold;
  }
  for (int y = 0; y < area.height; ++y) {
    border += light(0, y) + light(area.width - 1, y) - 2 * threshold;
  }
  return {median(area.width, area.height, light),
          median(area.height, area.width, [&](int y, int x) { return light(x, y); }), border < 0};
}

std::vector<SymbolArea> FindIsolated(const PageImage& image, Cells<std::uint8_t> edges) {
  // The smallest symbol has eight modules of two pixels; letters cross a line less often.
  constexpr int fewestPixels = 18;
  constexpr int fewestCrossings = 4;
  constexpr int fewestOfBoth = 10;
  constexpr int flattest = 5;  // a Data Matrix is up to four times as wide as high
  std::vector<SymbolArea> areas;
  for (int row = 0; row < edges.rows; ++row) {
    for (int column = 0; column < edges.columns; ++column) {
      if (edges.At(column, row) == 0) {
        continue;
      }
      const PageArea cells = TakeConnected(column, row, &edges);
      const auto [shorter, longer] = std::minmax(cells.width, cells.height);
      if (shorter * edges.size < fewestPixels || longer > shorter * flattest) {
        continue;
      }
      const PageArea area = edges.Pixels(cells, image, 1);
      const Look look = LookAt(image, area);
      if (std::min(look.crossings, look.crossingsDown) >= fewestCrossings &&
          look.crossings + look.crossingsDown >= fewestOfBoth) {
        areas.push_back({Upright(area), look.inverted});
      }
    }
  }
  return areas;
}

/// The sums over some pixels of the products of the gradient's parts, which tell the
/// direction that edges there have in common (the structure tensor).
struct Gradients {
  float xx = 0;
  float yy = 0;
  float xy = 0;

  void Add(const Gradients& other) {
    xx += other.xx;
    yy += other.yy;
    xy += other.xy;
  }
  /// Takes the part away that the grain of a scan has in all directions.
  void Subtract(float grain) {
    xx = std::max(0.0F, xx - grain / 2);
    yy = std::max(0.0F, yy - grain / 2);
  }
  float Energy() const { return xx + yy; }

  /// From 0, edges in all directions, to 1, in one.
  float Coherence() const { return Energy() > 0 ? std::hypot(xx - yy, 2 * xy) / Energy() : 0; }
  float Angle() const { return std::atan2(2 * xy, xx - yy) / 2; }
};

Gradients GradientsIn(const PageImage& image, int left, int top, int size) {
  std::int32_t xx = 0;
  std::int32_t yy = 0;
  std::int32_t xy = 0;
  const int right = std::min(left + size, image.width - 1);
  const int bottom = std::min(top + size, image.height - 1);
  for (int y = std::max(1, top); y < bottom; ++y) {
    const std::uint8_t* const above = Row(image, y - 1);
    const std::uint8_t* const here = Row(image, y);
    const std::uint8_t* const below = Row(image, y + 1);
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

/// What the gradients of a square add up to where nothing is printed.
float GrainOf(const PageImage& image, int size) {
  constexpr int places = 24;
  std::vector<float> energies;
  for (int row = 0; row < places; ++row) {
    for (int column = 0; column < places; ++column) {
      energies.push_back(GradientsIn(image, column * (image.width - size) / places,
                                     row * (image.height - size) / places, size)
                             .Energy());
    }
  }
  const auto low = energies.begin() + static_cast<std::ptrdiff_t>(energies.size() / 8);
  std::nth_element(energies.begin(), low, energies.end());
  return *low;
}

/// Of each cell alone; nothing where no edge is.
Cells<Gradients> FindGradients(const PageImage& image, const Cells<std::uint8_t>& edges) {
  constexpr int edgeCells = 2;
  Cells<Gradients> gradients(image, edges.size * edgeCells);
  const float grain = GrainOf(image, gradients.size);
  for (int row = 0; row < gradients.rows; ++row) {
    for (int column = 0; column < gradients.columns; ++column) {
      bool any = false;
      for (int i = 0; i < edgeCells * edgeCells; ++i) {
        const int x = column * edgeCells + i % edgeCells;
        const int y = row * edgeCells + i / edgeCells;
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

/// Cells around one that count for it, to each side: as many as hold a few bars.
constexpr int Around = 2;

/// With those around each: first those of the same row, then the rows.
Cells<Gradients> Spread(const Cells<Gradients>& alone) {
  Cells<Gradients> inRow = alone;
  Cells<Gradients> all = alone;
  for (const bool across : {true, false}) {
    const Cells<Gradients>& from = across ? alone : inRow;
    Cells<Gradients>& to = across ? inRow : all;
    for (int row = 0; row < alone.rows; ++row) {
      for (int column = 0; column < alone.columns; ++column) {
        Gradients sum;
        for (int step = -Around; step <= Around; ++step) {
          const int x = across ? column + step : column;
          const int y = across ? row : row + step;
          if (alone.Has(x, y)) {
            sum.Add(from.At(x, y));
          }
        }
        to.At(column, row) = sum;
      }
    }
  }
  return all;
}

double TurnBetween(double a, double b) { return std::abs(std::remainder(a - b, std::numbers::pi)); }

/// Cells with bars of one direction that touch each other.
struct BarCells {
  Gradients sum;
  std::vector<std::pair<int, int>> cells;
};

BarCells TakeParallel(int column, int row, const Cells<Gradients>& gradients,
                      Cells<std::uint8_t>* barred) {
  constexpr double mostTurn = 0.2;
  BarCells bars = {{}, {{column, row}}};
  barred->At(column, row) = 0;
  for (std::size_t next = 0; next < bars.cells.size(); ++next) {
    const auto [x, y] = bars.cells[next];
    bars.sum.Add(gradients.At(x, y));
    for (int dy = -1; dy <= 1; ++dy) {
      for (int dx = -1; dx <= 1; ++dx) {
        if (barred->Has(x + dx, y + dy) && barred->At(x + dx, y + dy) != 0 &&
            TurnBetween(gradients.At(x + dx, y + dy).Angle(), bars.sum.Angle()) < mostTurn) {
          barred->At(x + dx, y + dy) = 0;
          bars.cells.emplace_back(x + dx, y + dy);
        }
      }
    }
  }
  return bars;
}

/// The smallest rectangle of this angle around points.
TurnedArea AreaAround(const std::vector<std::pair<double, double>>& points, double angle,
                      double margin) {
  const double across = std::cos(angle);
  const double down = std::sin(angle);
  double low[] = {1e9, 1e9};
  double high[] = {-1e9, -1e9};
  for (const auto& [x, y] : points) {
    const double place[] = {x * across + y * down, y * across - x * down};
    for (int i = 0; i < 2; ++i) {
      low[i] = std::min(low[i], place[i]);
      high[i] = std::max(high[i], place[i]);
    }
  }
  const double u = (low[0] + high[0]) / 2;
  const double v = (low[1] + high[1]) / 2;
  return {u * across - v * down, u * down + v * across, high[0] - low[0] + 2 * margin,
          high[1] - low[1] + 2 * margin, angle};
}

std::vector<std::pair<double, double>> CornersOf(const TurnedArea& area) {
  std::vector<std::pair<double, double>> corners;
  const double across = std::cos(area.angle);
  const double down = std::sin(area.angle);
  for (const double u : {-area.width / 2, area.width / 2}) {
    for (const double v : {-area.height / 2, area.height / 2}) {
      corners.emplace_back(area.middleX + u * across - v * down,
                           area.middleY + u * down + v * across);
    }
  }
  return corners;
}

/// Whether one goes on where the other ends, in the same direction.
bool BelongTogether(const TurnedArea& a, const TurnedArea& b, double gap) {
  constexpr double mostTurn = 0.12;
  if (TurnBetween(a.angle, b.angle) > mostTurn) {
    return false;
  }
  const double across = std::cos(a.angle);
  const double down = std::sin(a.angle);
  const double x = b.middleX - a.middleX;
  const double y = b.middleY - a.middleY;
  return std::abs(x * across + y * down) < (a.width + b.width) / 2 + gap &&
         std::abs(y * across - x * down) < (a.height + b.height) / 2;
}

double SizeOf(const TurnedArea& area) { return area.width * area.height; }

/// A wide bar, a scratch or a fold parts what is one symbol. What would be joined
/// to no rectangle are words beside each other.
std::vector<TurnedArea> Joined(std::vector<TurnedArea> areas, double gap) {
  constexpr double leastFilled = 0.7;
  for (std::size_t i = 0; i < areas.size(); ++i) {
    for (std::size_t other = i + 1; other < areas.size();) {
      if (BelongTogether(areas[i], areas[other], gap)) {
        auto corners = CornersOf(areas[i]);
        const auto more = CornersOf(areas[other]);
        corners.insert(corners.end(), more.begin(), more.end());
        const bool larger = SizeOf(areas[other]) > SizeOf(areas[i]);
        const TurnedArea both = AreaAround(corners, areas[larger ? other : i].angle, 0);
        if (SizeOf(areas[i]) + SizeOf(areas[other]) >= leastFilled * SizeOf(both)) {
          areas[i] = both;
          areas.erase(areas.begin() + static_cast<std::ptrdiff_t>(other));
          other = i + 1;
          continue;
        }
      }
      ++other;
    }
  }
  return areas;
}

/// Calls the operation with the light values along lines across an area's bars,
/// evenly spaced. Nothing is called for what lies beyond the page.
template <typename See>
void EachLine(const PageImage& image, const TurnedArea& area, int lines, See&& see) {
  const double across = std::cos(area.angle);
  const double down = std::sin(area.angle);
  for (int line = 0; line < lines; ++line) {
    const double v = ((line + 0.5) / lines - 0.5) * area.height;
    for (int i = 0; i < static_cast<int>(area.width); ++i) {
      const double u = i - area.width / 2;
      const int x = static_cast<int>(std::floor(area.middleX + u * across - v * down));
      const int y = static_cast<int>(std::floor(area.middleY + u * down + v * across));
      if (x >= 0 && y >= 0 && x < image.width && y < image.height) {
        see(line, int{Row(image, y)[x]});
      }
    }
  }
}

/// How often most lines across the bars go from dark to light or back.
int CrossingsOf(const PageImage& image, const TurnedArea& area) {
  constexpr int lines = 27;
  int lowest = 255;
  int highest = 0;
  EachLine(image, area, lines, [&](int /*line*/, int light) {
    lowest = std::min(lowest, light);
    highest = std::max(highest, light);
  });
  const int threshold = (lowest + highest) / 2;
  const int band = (highest - lowest) / 10;
  std::array<int, lines> counts{};
  std::array<bool, lines> dark{};
  EachLine(image, area, lines, [&](int line, int light) {
    const auto at = static_cast<std::size_t>(line);
    if (dark[at] ? light > threshold + band : light < threshold - band) {
      dark[at] = !dark[at];
      ++counts[at];
    }
  });
  std::nth_element(counts.begin(), counts.begin() + lines / 2, counts.end());
  return counts[lines / 2];
}

/// How clearly bars stand out when light is summed up along them, if they had the
/// area's angle.
double SharpnessOf(const PageImage& image, const TurnedArea& area) {
  constexpr int lines = 32;
  const double across = std::cos(area.angle);
  const double down = std::sin(area.angle);
  double sharpness = 0;
  double before = 0;
  for (int i = 0; i < static_cast<int>(area.width); ++i) {
    const double u = i - area.width / 2;
    double sum = 0;
    for (int line = 0; line < lines; ++line) {
      const double v = ((line + 0.5) / lines - 0.5) * area.height;
      const auto x = static_cast<int>(area.middleX + u * across - v * down);
      const auto y = static_cast<int>(area.middleY + u * down + v * across);
      const bool inside = x >= 0 && y >= 0 && x < image.width && y < image.height;
      sum += inside ? Row(image, y)[x] : 255;
    }
    sharpness += (sum - before) * (sum - before);
    before = sum;
  }
  return sharpness;
}

/// The angle at which bars in the area are clearest, of so many to each side.
double ClearestAngle(const PageImage& image, TurnedArea area, int angles, double degrees) {
  constexpr double degree = std::numbers::pi / 180;
  const double middle = area.angle;
  double best = middle;
  double clearest = -1;
  for (int turn = -angles; turn <= angles; ++turn) {
    area.angle = middle + turn * degrees * degree;
    const double sharpness = SharpnessOf(image, area);
    if (sharpness > clearest) {
      clearest = sharpness;
      best = area.angle;
    }
  }
  return best;
}

/// Whether it is dark to both ends of the bars, where the margin of a symbol is.
bool StandsOnDark(const PageImage& image, const TurnedArea& area, Contrast contrast) {
  constexpr int places = 9;
  int dark = 0;
  int seen = 0;
  for (const double end : {-0.5, 0.5}) {
    for (int place = 0; place < places; ++place) {
      const double u = end * area.width;
      const double v = ((place + 0.5) / places - 0.5) * area.height * 0.8;
      const double x = area.middleX + u * std::cos(area.angle) - v * std::sin(area.angle);
      const double y = area.middleY + u * std::sin(area.angle) + v * std::cos(area.angle);
      if (x >= 0 && y >= 0 && x < image.width && y < image.height) {
        const int light = Row(image, static_cast<int>(y))[static_cast<int>(x)];
        dark += light < (contrast.dark + contrast.light) / 2 ? 1 : 0;
        ++seen;
      }
    }
  }
  return dark * 2 > seen;
}

std::vector<SymbolArea> FindBars(const PageImage& image, const Cells<std::uint8_t>& edges,
                                 Contrast contrast) {
  constexpr float leastCoherence = 0.3F;
  constexpr std::size_t fewestCells = 12;
  constexpr double leastFilled = 0.5;
  // The shortest symbol has some 30 bars and spaces. A word has fewer.
  constexpr double leastWidth = 50;
  constexpr int fewestCrossings = 20;
  const Cells<Gradients> gradients = Spread(FindGradients(image, edges));
  // Many edges, not the one at the rim of something.
  constexpr int counted = (2 * Around + 1) * (2 * Around + 1);
  const float step = static_cast<float>(contrast.Range()) / 5;
  const float leastEnergy =
      step * step * static_cast<float>(gradients.size * gradients.size * counted);
  Cells<std::uint8_t> barred(image, gradients.size);
  for (std::size_t i = 0; i < barred.values.size(); ++i) {
    const Gradients& around = gradients.values[i];
    barred.values[i] =
        around.Energy() >= leastEnergy && around.Coherence() >= leastCoherence ? 1 : 0;
  }
  std::vector<TurnedArea> parts;
  for (int row = 0; row < barred.rows; ++row) {
    for (int column = 0; column < barred.columns; ++column) {
      if (barred.At(column, row) == 0) {
        continue;
      }
      const BarCells bars = TakeParallel(column, row, gradients, &barred);
      if (bars.cells.size() >= fewestCells) {
        std::vector<std::pair<double, double>> middles;
        for (const auto& [x, y] : bars.cells) {
          middles.emplace_back((x + 0.5) * gradients.size, (y + 0.5) * gradients.size);
        }
        const TurnedArea area = AreaAround(middles, bars.sum.Angle(), gradients.size);
        const double cell = double{1} * gradients.size * gradients.size;
        if (static_cast<double>(bars.cells.size()) * cell >= leastFilled * SizeOf(area)) {
          parts.push_back(area);
        }
      }
    }
  }
  std::vector<SymbolArea> areas;
  for (TurnedArea& area : Joined(std::move(parts), 3.0 * gradients.size)) {
    if (area.width >= leastWidth && CrossingsOf(image, area) >= fewestCrossings) {
      // The gradients' angle is a few degrees off where modules are small: the grid of
      // pixels has directions of its own.
      area.angle = ClearestAngle(image, area, 4, 1);
      area.angle = ClearestAngle(image, area, 4, 0.25);
      areas.push_back({area, StandsOnDark(image, area, contrast)});
    }
  }
  return areas;
}

/// The lengths of runs of dark and light pixels along a line, the latest of them.
class Runs {
 public:
  static constexpr int Count = 7;

  /// Adds a run that has ended.
  void Add(int length) {
    std::copy(lengths.begin() + 1, lengths.end(), lengths.begin());
    lengths.back() = length;
  }

  /// The width of a ring where the runs are those through rings: as wide as each
  /// other. 0 where they are not.
  double Ring() const {
    const auto [shortest, longest] = std::minmax_element(lengths.begin(), lengths.end());
    // Blur widens light against dark or the other way round.
    return *shortest >= 2 && 2 * *longest <= 3 * *shortest + 3 ? Total() / double{Count} : 0;
  }
  int Total() const { return std::accumulate(lengths.begin(), lengths.end(), 0); }

 private:
  std::array<int, Count> lengths{};
};

/// Of a few pixels around a place: the grain of a scan is finer than any ring.
int SmoothLight(const PageImage& image, int x, int y) {
  const auto threeOf = [x](const std::uint8_t* row) {
    return row[x - 1] + 2 * row[x] + row[x + 1];
  };
  return (threeOf(Row(image, y - 1)) + 2 * threeOf(Row(image, y)) + threeOf(Row(image, y + 1))) /
         16;
}

/// Tells dark from light along a line, without a change of mind for little.
struct Shade {
  int threshold;
  int band;
  bool dark;

  Shade(Contrast contrast, int light)
      : threshold((contrast.dark + contrast.light) / 2),
        band(contrast.Range() / 12),
        dark(light < threshold) {}

  /// Whether the next pixel changes it.
  bool Changes(int light) {
    const bool changes = dark ? light > threshold + band : light < threshold - band;
    dark = dark != changes;
    return changes;
  }
};

/// Looks from the middle up and down for as many rings as were seen across it. The
/// row of the middle; none where the rings are not there.
std::optional<double> MiddleOfRings(const PageImage& image, int x, int y, Contrast contrast,
                                    double ring) {
  double ends[2];
  for (const int step : {-1, 1}) {
    Shade shade(contrast, SmoothLight(image, x, y));
    int at = y;
    int start = y;
    for (int rings = 0; rings < 4;) {
      at += step;
      if (at < 1 || at + 1 >= image.height) {
        return {};
      }
      const int run = std::abs(at - start);
      const bool over = shade.Changes(SmoothLight(image, x, at));
      // What is left of the middle may be next to nothing, or a whole ring.
      if (run > 1.6 * ring + 1 || (over && rings > 0 && run < 0.5 * ring)) {
        return {};
      }
      if (!over) {
        continue;
      }
      start = at;
      ++rings;
    }
    ends[step > 0 ? 1 : 0] = at;
  }
  const double height = ends[1] - ends[0];
  if (std::abs(height - 7 * ring) > 1.5 * ring) {
    return {};
  }
  return (ends[0] + ends[1]) / 2;
}

/// The angle of squares within each other: an eighth turn at most, as their sides are
/// all alike.
double AngleOfSquares(const PageImage& image, const TurnedArea& squares) {
  const PageArea area = squares.Around();
  const int right = std::min(image.width - 1, area.left + area.width);
  const int bottom = std::min(image.height - 1, area.top + area.height);
  // The fourth power of a gradient points the same way for all four sides.
  std::complex<double> sum;
  for (int y = std::max(1, area.top); y < bottom; ++y) {
    const std::uint8_t* const above = Row(image, y - 1);
    const std::uint8_t* const here = Row(image, y);
    const std::uint8_t* const below = Row(image, y + 1);
    for (int x = std::max(1, area.left); x < right; ++x) {
      const auto step = [x](const std::uint8_t* row) { return row[x + 1] - row[x - 1]; };
      const auto light = [x](const std::uint8_t* row) {
        return 3 * row[x - 1] + 10 * row[x] + 3 * row[x + 1];
      };
      const std::complex<double> gradient(3 * step(above) + 10 * step(here) + 3 * step(below),
                                          light(below) - light(above));
      const std::complex<double> square = gradient * gradient;
      sum += square * square;
    }
  }
  return std::arg(sum) / 4;
}

std::vector<SymbolArea> FindBullsEyes(const PageImage& image, const PageArea& printed,
                                      Contrast contrast) {
  constexpr int rowStep = 2;
  constexpr std::size_t most = 32;  // more of them are a pattern, as of a chequered floor
  std::vector<SymbolArea> areas;
  const int left = std::max(1, printed.left);
  const int right = std::min(image.width - 1, printed.left + printed.width);
  const int bottom = std::min(image.height - 1, printed.top + printed.height);
  if (left >= right) {
    return areas;  // too narrow for a pixel with one on each side of it
  }
  for (int y = std::max(1, printed.top); y < bottom && areas.size() < most; y += rowStep) {
    Runs runs;
    Shade shade(contrast, SmoothLight(image, left, y));
    int start = left;
    for (int x = left; x < right && areas.size() < most; ++x) {
      if (!shade.Changes(SmoothLight(image, x, y))) {
        continue;
      }
      runs.Add(x - start);
      start = x;
      const double ring = runs.Ring();
      if (ring == 0) {
        continue;
      }
      const int middle = x - runs.Total() / 2;
      if (const auto centre = MiddleOfRings(image, middle, y, contrast, ring)) {
        const bool known = std::any_of(areas.begin(), areas.end(), [&](const SymbolArea& other) {
          return std::hypot(other.area.middleX - middle, other.area.middleY - *centre) < 3 * ring;
        });
        if (!known) {
          TurnedArea area = {double(middle), *centre, 7 * ring, 7 * ring, 0};
          area.angle = AngleOfSquares(image, area);
          // Four runs lie between the middle and the pixel that has just begun, so that
          // both are of one shade.
          areas.push_back({area, !shade.dark});
        }
      }
    }
  }
  return areas;
}

}  // namespace

TurnedArea Upright(const PageArea& area) {
  return {area.left + area.width / 2.0, area.top + area.height / 2.0, double(area.width),
          double(area.height), 0};
}

PageArea TurnedArea::Around() const {
  const double across = std::abs(std::cos(angle));
  const double down = std::abs(std::sin(angle));
  const double wide = width * across + height * down;
  const double high = width * down + height * across;
  const auto whole = [](double pixels) { return static_cast<int>(std::lround(pixels)); };
  return {whole(middleX - wide / 2), whole(middleY - high / 2), whole(wide), whole(high)};
}

PageAreas FindAreas(const PageImage& image, bool barsAlone) {
  // A page of more pixels is not one of more symbols: it has larger ones.
  constexpr int largePage = 3000;
  const int cellSize = std::min(image.width, image.height) < largePage ? 4 : 8;
  constexpr int leastContrast = 16;
  const Contrast contrast = ContrastOf(image);
  if (contrast.Range() < leastContrast) {
    return {};
  }
  const Cells<std::uint8_t> edges = FindEdges(image, cellSize, contrast.Range() / 4);
  const PageArea printed = ExtentOfMarked(edges, image);
  PageAreas areas = {printed, {}, FindBars(image, edges, contrast), {}};
  if (!barsAlone) {
    areas.isolated = FindIsolated(image, edges);
    areas.bullsEyes = FindBullsEyes(image, printed, contrast);
  }
  return areas;
}

}  // namespace conduit
