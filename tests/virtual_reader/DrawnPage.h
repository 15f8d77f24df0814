#pragma once

#include <cstdint>

#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// @param luminance  of a pixel, by column and row
PageImage Drawn(int width, int height, auto&& luminance) {
  PageImage page = {width, height, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      page.luminance.push_back(static_cast<std::uint8_t>(luminance(x, y)));
    }
  }
  page.luminance.shrink_to_fit();  // a byte beyond the page is none of the vector's
  return page;
}

}  // namespace conduit
