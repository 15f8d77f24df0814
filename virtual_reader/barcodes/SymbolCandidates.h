#pragma once

#include <vector>

#include "virtual_reader/pixels/Geometry.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// A region of the page that may be a symbol.
struct SymbolCandidate {
  RotatedRectangle region;
  bool inverted;  ///< light on dark
};

/// Where on a page symbols may be, by contrast alone.
struct SymbolCandidates {
  Rectangle printed;                       ///< around everything; empty where the page is blank
  std::vector<SymbolCandidate> matrix;     ///< see MatrixFinder.h
  std::vector<SymbolCandidate> linear;     ///< see LinearFinder.h
  std::vector<SymbolCandidate> bullsEyes;  ///< see BullsEyeFinder.h
};

/// Takes less than a byte for each pixel of the image.
/// @param linearOnly  leaves out the matrix symbols and the bull's eyes
SymbolCandidates FindSymbolCandidates(const PageImage& image, bool linearOnly);

}  // namespace conduit
