#include "virtual_reader/pixels/Sampling.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace conduit {

PageImage Reduced(const PageImage& page, int factor) {
  PageImage reduced = {page.width / factor, page.height / factor, {}};
  const auto width = static_cast<std::size_t>(reduced.width);
  const auto step = static_cast<std::size_t>(factor);
  reduced.luminance.reserve(width * static_cast<std::size_t>(reduced.height));
  std::vector<unsigned> sums(width);
  for (int y = 0; y < reduced.height; ++y) {
    std::fill(sums.begin(), sums.end(), 0U);
    for (int j = 0; j < factor; ++j) {
      const std::uint8_t* const row = page.Row(y * factor + j);
      for (std::size_t x = 0; x < width; ++x) {
        for (std::size_t i = 0; i < step; ++i) {
          sums[x] += row[x * step + i];
        }
      }
    }
    for (const unsigned sum : sums) {
      reduced.luminance.push_back(static_cast<std::uint8_t>(sum / (step * step)));
    }
  }
  return reduced;
}

RectifiedRegion::RectifiedRegion(const PageImage& page, const RotatedRectangle& region,
                                 bool inverted)
    : image{std::max(1, static_cast<int>(std::lround(region.width))),
            std::max(1, static_cast<int>(std::lround(region.height))),
            {}},
      axes(region.Axes()) {
  image.luminance.reserve(static_cast<std::size_t>(image.width) *
                          static_cast<std::size_t>(image.height));
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      const Point point = axes.ToPage(x + 0.5 - image.width / 2.0, y + 0.5 - image.height / 2.0);
      const double left = std::floor(point.x - 0.5);
      const double top = std::floor(point.y - 0.5);
      if (left < 0 || top < 0 || left + 1 >= page.width || top + 1 >= page.height) {
        image.luminance.push_back(255);
        continue;
      }
      const auto value = static_cast<std::uint8_t>(std::lround(Interpolated(
          page, static_cast<int>(left), static_cast<int>(top),
          static_cast<float>(point.x - 0.5 - left), static_cast<float>(point.y - 0.5 - top))));
      image.luminance.push_back(inverted ? static_cast<std::uint8_t>(255 - value) : value);
    }
  }
}

Rectangle RectifiedRegion::OnPage(const Rectangle& area) const {
  const auto corner = [&](int x, int y) {
    return axes.ToPage(x - image.width / 2.0, y - image.height / 2.0);
  };
  const Point corners[] = {corner(area.left, area.top), corner(area.Right(), area.top),
                           corner(area.left, area.Bottom()), corner(area.Right(), area.Bottom())};
  const auto [left, right] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
  const auto [top, bottom] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
  const auto whole = [](double pixels) { return static_cast<int>(std::lround(pixels)); };
  return {whole(left), whole(top), whole(right - left), whole(bottom - top)};
}

}  // namespace conduit
