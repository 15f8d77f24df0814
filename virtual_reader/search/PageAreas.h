#pragma once

#include <vector>

#include "virtual_reader/images/PageImage.h"

namespace conduit {

/// In pixels of the page.
struct PageArea {
  int left;
  int top;
  int width;
  int height;
};

bool Overlap(const PageArea& a, const PageArea& b);

/// A part of the page that looks like a symbol.
struct SymbolArea {
  PageArea area;
  bool inverted;  ///< light on dark
};

/// A part of the page that is full of parallel bars, as linear symbols and PDF417 are.
struct BarArea {
  PageArea area;
  bool inverted;  ///< light on dark
  double angle;   ///< of the line across the bars, in radians clockwise from the row: within
                  ///< a quarter turn either way
};

/// What stands where on a page, told by contrast alone.
struct PageAreas {
  PageArea printed;                  ///< around everything; empty where the page is blank
  std::vector<SymbolArea> isolated;  ///< as dense as a matrix symbol, with a margin around it
  std::vector<BarArea> bars;
};

/// Takes at most half a byte for each pixel of the image.
PageAreas FindAreas(const PageImage& image);

}  // namespace conduit
