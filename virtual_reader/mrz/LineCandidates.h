#pragma once

#include <vector>

#include "virtual_reader/mrz/GlyphCandidates.h"
#include "virtual_reader/mrz/LineCurve.h"

namespace conduit {

/// Glyph candidates beside each other at one pitch.
struct LineCandidate {
  std::vector<GlyphCandidate> glyphs;  ///< by x
  double offset = 0;                   ///< y = offset + slope x
  double slope = 0;
  double pitch = 0;
  double evenness = 0;  ///< 1: at a whole number of pitches from each other; 0: anywhere
  double glyphHeight = 0;
  TextLine line = {};  ///< fitted to the glyphs

  double Left() const { return glyphs.front().x; }
  double Right() const { return glyphs.back().x; }
  double At(double x) const { return offset + slope * x; }
};

/// Returns the lines of evenly spaced glyphs that run from left to right, with the pieces of a
/// line joined.
std::vector<LineCandidate> FindLineCandidates(std::vector<GlyphCandidate> glyphs);

}  // namespace conduit
