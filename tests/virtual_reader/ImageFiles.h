#pragma once

#include <gmock/gmock.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "virtual_reader/InputFile.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

inline std::string ImageBytes(const std::string& name) {
  return ReadInputFile(std::string(IMAGES_FOLDER "/") + name, 1 << 20);
}

/// The text of what is thrown, or "".
template <typename Work>
std::string ReasonOf(const Work& work) {
  try {
    work();
    return "";
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
}

/// The light at a place, as the nearest of black, a grey and white: "#", "+", ".".
inline char ShadeAt(const PageImage& image, int x, int y) {
  const auto at = static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width);
  return "#+."[(image.luminance.at(at + static_cast<std::size_t>(x)) + 64) / 128];
}

/// The card that make-images draws, by what it shows at some places: its mark, its line
/// of 16 pixels, its disc, its unprinted page.
inline std::string CardSeenIn(const PageImage& image) {
  std::string shades = std::to_string(image.width) + " x " + std::to_string(image.height) + " ";
  for (const auto& [x, y] : {std::pair(2, 2),
                             {190, 90},
                             {210, 50},
                             {100, 110},
                             {310, 208},
                             {310, 194},
                             {310, 222},
                             {700, 450},
                             {700, 395},
                             {1000, 620}}) {
    shades += ShadeAt(image, x, y);
  }
  return shades;
}

constexpr char TheCard[] = "1012 x 638 ##..#..##.";

/// The corner that the card's mark stands in: "upper left".
inline std::string CornerOfMark(const PageImage& image) {
  std::string corners;
  for (const bool lower : {false, true}) {
    for (const bool right : {false, true}) {
      if (ShadeAt(image, right ? image.width - 50 : 50, lower ? image.height - 50 : 50) == '#') {
        corners += std::string(lower ? "lower" : "upper") + (right ? " right" : " left");
      }
    }
  }
  return corners;
}

/// What EXIF and TIFF call the orientations 1 to 8, by where the mark of the card then
/// stands and whether the card stands on end.
constexpr struct {
  const char* corner;
  bool onEnd;
} Orientations[] = {
    {"upper left", false}, {"upper right", false}, {"lower right", false}, {"lower left", false},
    {"upper left", true},  {"upper right", true},  {"lower right", true},  {"lower left", true},
};

}  // namespace conduit
