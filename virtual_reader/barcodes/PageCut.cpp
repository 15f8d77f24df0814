#include "virtual_reader/barcodes/PageCut.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace conduit {

PageCut::PageCut(const PageImage& page, const TurnedArea& area, bool inverted)
    : image{std::max(1, static_cast<int>(std::lround(area.width))),
            std::max(1, static_cast<int>(std::lround(area.height))),
            {}},
      middle{area.middleX, area.middleY},
      across(std::cos(area.angle)),
      down(std::sin(area.angle)) {
  image.light.reserve(static_cast<std::size_t>(image.width) *
                      static_cast<std::size_t>(image.height));
  const std::uint8_t* const light = page.light.data();
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      const Place place = OnPage(x + 0.5, y + 0.5);
      // Between the middles of four pixels.
      const double left = std::floor(place.x - 0.5);
      const double top = std::floor(place.y - 0.5);
      if (left < 0 || top < 0 || left + 1 >= page.width || top + 1 >= page.height) {
        image.light.push_back(255);
        continue;
      }
      const auto right = static_cast<float>(place.x - 0.5 - left);
      const auto below = static_cast<float>(place.y - 0.5 - top);
      const std::uint8_t* const at =
          light + static_cast<std::size_t>(top) * static_cast<std::size_t>(page.width) +
          static_cast<std::size_t>(left);
      const auto between = [right](const std::uint8_t* pair) {
        return static_cast<float>(pair[0]) * (1 - right) + static_cast<float>(pair[1]) * right;
      };
      const float value = between(at) * (1 - below) + between(at + page.width) * below;
      const auto rounded = static_cast<std::uint8_t>(std::lround(value));
      image.light.push_back(inverted ? static_cast<std::uint8_t>(255 - rounded) : rounded);
    }
  }
}

PageCut::Place PageCut::OnPage(double x, double y) const {
  const double fromMiddle = x - image.width / 2.0;
  const double belowMiddle = y - image.height / 2.0;
  return {middle.x + fromMiddle * across - belowMiddle * down,
          middle.y + fromMiddle * down + belowMiddle * across};
}

PageArea PageCut::OnPage(const PageArea& area) const {
  const Place corners[] = {OnPage(area.left, area.top), OnPage(area.left + area.width, area.top),
                           OnPage(area.left, area.top + area.height),
                           OnPage(area.left + area.width, area.top + area.height)};
  const auto [left, right] = std::minmax({corners[0].x, corners[1].x, corners[2].x, corners[3].x});
  const auto [top, bottom] = std::minmax({corners[0].y, corners[1].y, corners[2].y, corners[3].y});
  const auto whole = [](double pixels) { return static_cast<int>(std::lround(pixels)); };
  return {whole(left), whole(top), whole(right - left), whole(bottom - top)};
}

}  // namespace conduit
