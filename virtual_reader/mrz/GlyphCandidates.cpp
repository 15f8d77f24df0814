#include "virtual_reader/mrz/GlyphCandidates.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "virtual_reader/pixels/Components.h"

namespace conduit {
namespace {

/// An A4 page of small print has some 6000 characters.
constexpr std::size_t MostGlyphs = 30000;

// In pixels. The characters of an MRZ are 2.54 mm apart and about as high (ICAO Doc 9303-3, OCR-B
// size 1): 15 pixels at 150 dpi, 60 at 600 dpi, fewer on worse scans.
constexpr int SmallestGlyph = 7;
constexpr int LargestGlyph = 100;
constexpr int ThinnestGlyph = 2;
/// Of its bounds; a frame or a scratch is less.
constexpr int LeastPercentDark = 8;

/// Half the side of the square that a pixel is compared with: two characters of 20 pixels.
constexpr int Surroundings = 20;
/// A dark pixel is so many standard deviations below the mean of its surroundings (Niblack's
/// threshold), and so many levels, or flat paper would be full of glyphs.
constexpr float DeviationsBelow = 0.45F;
constexpr float LevelsBelow = 4;

/// The sum and the sum of squares of luminance over a square that is moved over the
/// page, column by column.
class MovingSquare {
 public:
  explicit MovingSquare(const PageImage& page) : page(page), sums(Width()), squares(Width()) {
    for (int y = 0; y < std::min(Surroundings, page.height); ++y) {
      AddRow(y, 1);
    }
  }

  /// Moves it to the row, one below the last.
  void MoveTo(int y) {
    if (y + Surroundings < page.height) {
      AddRow(y + Surroundings, 1);
    }
    if (y - Surroundings - 1 >= 0) {
      AddRow(y - Surroundings - 1, -1);
    }
  }

  /// Sets for each pixel of the row whether it is darker than its surroundings.
  void FindDark(int y, std::uint8_t* dark) const {
    std::int64_t sum = 0;
    std::int64_t square = 0;
    int columns = 0;
    const auto add = [&](int x, int sign) {
      sum += std::int64_t{sign} * sums[static_cast<std::size_t>(x)];
      square += std::int64_t{sign} * squares[static_cast<std::size_t>(x)];
      columns += sign;
    };
    for (int x = 0; x < std::min(Surroundings, page.width); ++x) {
      add(x, 1);
    }
    const std::uint8_t* const row = page.Row(y);
    for (int x = 0; x < page.width; ++x) {
      if (x + Surroundings < page.width) {
        add(x + Surroundings, 1);
      }
      if (x - Surroundings - 1 >= 0) {
        add(x - Surroundings - 1, -1);
      }
      const auto pixels = static_cast<float>(columns) * static_cast<float>(rows);
      const float mean = static_cast<float>(sum) / pixels;
      const float variance = static_cast<float>(square) / pixels - mean * mean;
      const float limit = mean - DeviationsBelow * std::sqrt(std::max(0.F, variance)) - LevelsBelow;
      dark[x] = static_cast<float>(row[x]) < limit ? 1 : 0;
    }
  }

 private:
  std::size_t Width() const { return static_cast<std::size_t>(page.width); }

  void AddRow(int y, int sign) {
    const std::uint8_t* const row = page.Row(y);
    for (std::size_t x = 0; x < Width(); ++x) {
      sums[x] += sign * row[x];
      squares[x] += sign * row[x] * row[x];
    }
    rows += sign;
  }

  const PageImage& page;
  std::vector<std::int32_t> sums;  // of a column within the square's height
  std::vector<std::int32_t> squares;
  int rows = 0;
};

}  // namespace

std::vector<GlyphCandidate> FindGlyphCandidates(const PageImage& page) {
  MovingSquare square(page);
  ComponentLabelling labelling;
  std::vector<std::uint8_t> dark(static_cast<std::size_t>(page.width));
  for (int y = 0; y < page.height; ++y) {
    square.MoveTo(y);
    square.FindDark(y, dark.data());
    labelling.AddRow(dark.data(), page.width);
  }
  std::vector<GlyphCandidate> glyphs;
  for (const Component& component : labelling.Take()) {
    const auto& [left, top, width, height] = component.bounds;
    const auto [shorter, longer] = std::minmax(width, height);
    if (longer >= SmallestGlyph && longer <= LargestGlyph && shorter >= ThinnestGlyph &&
        component.pixels * 100 > width * height * LeastPercentDark) {
      glyphs.push_back({left + width / 2.0, top + height / 2.0, double(width), double(height)});
    }
  }
  if (glyphs.size() > MostGlyphs) {
    glyphs.clear();
  }
  return glyphs;
}

}  // namespace conduit
