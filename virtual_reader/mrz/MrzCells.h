#pragma once

#include <array>
#include <vector>

#include "virtual_reader/mrz/Glyphs.h"
#include "virtual_reader/mrz/MrzCandidates.h"

namespace conduit {

/// A character position of an MRZ: its similarity to each character.
using MrzCell = std::array<float, MrzCharacterCount>;

/// The cells of an MRZ, line by line; none where a candidate is no MRZ.
struct MrzCells {
  std::vector<std::vector<MrzCell>> lines;
  double similarity = 0;  ///< the mean, of each cell to its most similar character
  double beyond = 0;      ///< the highest just before or after a line
};

/// Lays a grid of cells over the lines, either way up, and compares each with the characters of
/// the typeface OCR-B.
MrzCells ReadCells(const PageImage& page, const MrzCandidate& candidate);

}  // namespace conduit
