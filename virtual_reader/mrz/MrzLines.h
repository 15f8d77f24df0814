#pragma once

#include <span>
#include <vector>

#include "virtual_reader/mrz/Glyphs.h"
#include "virtual_reader/mrz/LineStrip.h"
#include "virtual_reader/mrz/MrzCandidates.h"

namespace conduit {

/// What shapes of the print a search tries.
struct ShapeSearch {
  std::span<const double> scales;  ///< factors to the width and the height
  double mostSlant;                ///< to each side of the present one
  int everyColumn;                 ///< of which the cells are compared
  SearchRange range;               ///< of each glyph
};

/// The lines of what may be an MRZ, and the shape of their print. Both are refined step by step:
/// the characters that are recognised tell where the others are.
class MrzLines {
 public:
  /// @param skew  how far the page is taken to be sheared
  MrzLines(const PageImage& page, const MrzCandidate& candidate, double skew);

  /// The same lines of the page upside down.
  MrzLines UpsideDown() const;

  int Columns() const { return columns; }
  std::size_t Lines() const { return strips.size(); }

  GlyphMatch MatchAt(std::size_t line, int column, SearchRange range) const;

  /// Recognises every so many characters and moves the courses to where they are. Returns the
  /// mean similarity.
  double Align(SearchRange range, int everyColumn = 1);

  /// Fits the shape of the print to the characters that were recognised last: its size, then
  /// its slant, then its blur.
  void FitShape(const ShapeSearch& search);

  /// Lets each line begin at its column, and all have as many.
  void Cut(const std::vector<int>& begins, int newColumns);

 private:
  double SimilarityWith(const PrintShape& tried, const ShapeSearch& search) const;
  void EstimateNoise();

  std::vector<LineStrip> strips;
  PrintShape shape;
  double noise = 0;  ///< see MatchGlyphs
  int columns = 0;
  std::vector<std::vector<int>> recognised;  ///< the character of each cell, or NoCharacter
};

}  // namespace conduit
