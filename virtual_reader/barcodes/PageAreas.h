#pragma once

#include <vector>

#include "virtual_reader/images/PageImage.h"
#include "virtual_reader/barcodes/PageArea.h"

namespace conduit {

/// A rectangle that need not stand upright, in pixels of the page.
struct TurnedArea {
  double middleX;
  double middleY;
  double width;   ///< along the angle
  double height;  ///< across it
  double angle;   ///< in radians, clockwise from the row

  PageArea Around() const;
};

TurnedArea Upright(const PageArea& area);

/// A part of the page that looks like a symbol.
struct SymbolArea {
  TurnedArea area;
  bool inverted;  ///< light on dark
};

/// What stands where on a page, told by contrast alone.
struct PageAreas {
  PageArea printed;                   ///< around everything; empty where the page is blank
  std::vector<SymbolArea> isolated;   ///< as dense as a matrix symbol, with a margin around it
  std::vector<SymbolArea> bars;       ///< as linear symbols and PDF417 are; the angle crosses them
  std::vector<SymbolArea> bullsEyes;  ///< rings as in the middle of an Aztec Code
};

/// Takes less than a byte for each pixel of the image.
/// @param barsAlone  leaves out the isolated areas and the bull's eyes
PageAreas FindAreas(const PageImage& image, bool barsAlone);

}  // namespace conduit
