#include "virtual_reader/mrz/Marks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "virtual_reader/pixels/Components.h"

namespace conduit {
namespace {

constexpr std::size_t MostMarks = 30000;

/// Half the side of the square that a pixel is compared with: two characters.
constexpr int Surroundings = 20;

constexpr int SmallestMark = 7;
constexpr int LargestMark = 100;
constexpr int ThinnestMark = 2;
constexpr int LeastPercentDark = 8;

/// The sum and the sum of squares of light over a square that is moved over the
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

  /// Tells for each pixel of the row whether it is darker than its surroundings.
  void FindDark(int y, std::uint8_t* dark) const {
    std::int64_t sum = 0;
    std::int64_t square = 0;
    int columns = 0;
    const auto add = [&](int x, int sign) {
      sum += sign * sums[static_cast<std::size_t>(x)];
      square += sign * squares[static_cast<std::size_t>(x)];
      columns += sign;
    };
    for (int x = 0; x < std::min(Surroundings, page.width); ++x) {
      add(x, 1);
    }
    const std::uint8_t* const row = RowAt(y);
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
      constexpr float deviationsBelow = 0.45F;
      constexpr float levelsBelow = 4;  // or flat paper would be full of marks
      const float limit = mean - deviationsBelow * std::sqrt(std::max(0.F, variance)) - levelsBelow;
      dark[x] = static_cast<float>(row[x]) < limit ? 1 : 0;
    }
  }

 private:
  std::size_t Width() const { return static_cast<std::size_t>(page.width); }

  const std::uint8_t* RowAt(int y) const { return page.Row(y); }

  void AddRow(int y, int sign) {
    const std::uint8_t* const row = RowAt(y);
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

std::vector<Mark> FindMarks(const PageImage& page) {
  MovingSquare square(page);
  ComponentLabelling labelling;
  std::vector<std::uint8_t> dark(static_cast<std::size_t>(page.width));
  for (int y = 0; y < page.height; ++y) {
    square.MoveTo(y);
    square.FindDark(y, dark.data());
    labelling.AddRow(dark.data(), page.width);
  }
  std::vector<Mark> marks;
  for (const Component& component : labelling.Take()) {
    const auto& [left, top, width, height] = component.bounds;
    const auto [shorter, longer] = std::minmax(width, height);
    if (longer >= SmallestMark && longer <= LargestMark && shorter >= ThinnestMark &&
        component.pixels * 100 > width * height * LeastPercentDark) {
      marks.push_back({left + width / 2.0, top + height / 2.0, double(width), double(height)});
    }
  }
  if (marks.size() > MostMarks) {
    marks.clear();
  }
  return marks;
}

}  // namespace conduit
