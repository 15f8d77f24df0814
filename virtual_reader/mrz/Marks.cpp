#include "virtual_reader/mrz/Marks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace conduit {
namespace {

constexpr std::size_t MostMarks = 30000;

/// Half the side of the square that a pixel is compared with: two characters.
constexpr int Surroundings = 20;

constexpr int SmallestMark = 7;
constexpr int LargestMark = 100;

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

  const std::uint8_t* RowAt(int y) const {
    return &page.light[static_cast<std::size_t>(y) * Width()];
  }

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

/// Joins the runs of dark pixels of one row after the other to marks.
class MarkBuilder {
 public:
  void AddRow(int y, const std::uint8_t* dark, int width) {
    const std::size_t begin = runs.size();
    std::size_t above = aboveBegin;
    for (int x = 0; x < width;) {
      if (dark[x] == 0) {
        ++x;
        continue;
      }
      int end = x;
      while (end < width && dark[end] != 0) {
        ++end;
      }
      const std::size_t index = runs.size();
      runs.push_back({y, x, end, index});
      while (above < begin && runs[above].to < x) {
        ++above;
      }
      for (std::size_t other = above; other < begin && runs[other].from <= end; ++other) {
        Join(other, index);
      }
      x = end;
    }
    aboveBegin = begin;
  }

  std::vector<Mark> Take() {
    std::vector<Box> boxes(runs.size());
    for (std::size_t i = 0; i < runs.size(); ++i) {
      Box& box = boxes[RootOf(i)];
      const Run& run = runs[i];
      box.left = std::min(box.left, run.from);
      box.right = std::max(box.right, run.to);
      box.top = std::min(box.top, run.y);
      box.bottom = std::max(box.bottom, run.y + 1);
      box.area += run.to - run.from;
    }
    std::vector<Mark> marks;
    for (const Box& box : boxes) {
      const int width = box.right - box.left;
      const int height = box.bottom - box.top;
      constexpr int thinnest = 2;
      constexpr int leastPercentDark = 8;
      if (box.area > 0 && std::max(width, height) >= SmallestMark &&
          std::max(width, height) <= LargestMark && std::min(width, height) >= thinnest &&
          box.area * 100 > width * height * leastPercentDark) {
        marks.push_back({(box.left + box.right) / 2.0, (box.top + box.bottom) / 2.0,
                         static_cast<double>(width), static_cast<double>(height)});
      }
    }
    return marks;
  }

 private:
  struct Run {
    int y;
    int from;
    int to;
    std::size_t parent;
  };
  struct Box {
    int left = std::numeric_limits<int>::max();
    int top = std::numeric_limits<int>::max();
    int right = 0;
    int bottom = 0;
    int area = 0;
  };

  std::size_t RootOf(std::size_t run) {
    while (runs[run].parent != run) {
      runs[run].parent = runs[runs[run].parent].parent;
      run = runs[run].parent;
    }
    return run;
  }

  void Join(std::size_t a, std::size_t b) {
    const std::size_t rootOfA = RootOf(a);
    const std::size_t rootOfB = RootOf(b);
    runs[std::max(rootOfA, rootOfB)].parent = std::min(rootOfA, rootOfB);
  }

  std::vector<Run> runs;
  std::size_t aboveBegin = 0;  ///< of the row above
};

}  // namespace

PageImage Reduced(const PageImage& page, int factor) {
  PageImage reduced = {page.width / factor, page.height / factor, {}};
  const auto width = static_cast<std::size_t>(reduced.width);
  const auto step = static_cast<std::size_t>(factor);
  reduced.light.reserve(width * static_cast<std::size_t>(reduced.height));
  std::vector<unsigned> sums(width);
  for (std::size_t y = 0; y < static_cast<std::size_t>(reduced.height); ++y) {
    std::fill(sums.begin(), sums.end(), 0U);
    for (std::size_t j = 0; j < step; ++j) {
      const std::uint8_t* const row =
          &page.light[(y * step + j) * static_cast<std::size_t>(page.width)];
      for (std::size_t x = 0; x < width; ++x) {
        for (std::size_t i = 0; i < step; ++i) {
          sums[x] += row[x * step + i];
        }
      }
    }
    for (const unsigned sum : sums) {
      reduced.light.push_back(static_cast<std::uint8_t>(sum / (step * step)));
    }
  }
  return reduced;
}

std::vector<Mark> FindMarks(const PageImage& page) {
  MovingSquare square(page);
  MarkBuilder builder;
  std::vector<std::uint8_t> dark(static_cast<std::size_t>(page.width));
  for (int y = 0; y < page.height; ++y) {
    square.MoveTo(y);
    square.FindDark(y, dark.data());
    builder.AddRow(y, dark.data(), page.width);
  }
  std::vector<Mark> marks = builder.Take();
  if (marks.size() > MostMarks) {
    marks.clear();
  }
  return marks;
}

}  // namespace conduit
