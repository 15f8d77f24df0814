#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace conduit {

/// The characters of a machine-readable zone, the MRZ (ICAO Doc 9303-3, 4.1).
inline constexpr std::string_view MrzCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789<";
inline constexpr std::size_t MrzCharacterCount = 37;

/// A glyph is compared on a grid: so many samples to a pitch of the print.
inline constexpr int GlyphWidth = 20;
inline constexpr int GlyphHeight = 28;
inline constexpr int GlyphSamples = GlyphWidth * GlyphHeight;

/// A cell is sampled with room around it, within which the glyph is looked for.
inline constexpr int CellMargin = 4;
inline constexpr int CellWidth = GlyphWidth + 2 * CellMargin;
inline constexpr int CellHeight = GlyphHeight + 2 * CellMargin;

/// The ink of a cell: 0 for white paper to 255.
struct CellInk {
  std::array<std::array<std::int16_t, CellWidth>, CellHeight> rows;
};

/// How sharp the print is: glyphs are known in as many degrees of blur.
inline constexpr int BlurCount = 3;

/// How far from the centre of its cell a glyph is looked for, and in what steps, in
/// samples; at most CellMargin.
struct SearchRange {
  int x;
  int y;
  int step = 1;
};

/// The similarity of a cell to each character, at the place where it is highest: the normalised
/// correlation, from 1, the same, to 0, nothing in common.
struct GlyphMatch {
  std::array<float, MrzCharacterCount> similarity;
  std::size_t best;
  int x;  ///< of the best, from the centre
  int y;

  float Best() const { return similarity[best]; }
};

/// @param blur   an index of degrees: below BlurCount
/// @param noise  the sum of squares of the samples of a cell without print: a cell that varies
///               no more than that is similar to nothing
GlyphMatch MatchGlyphs(const CellInk& ink, int blur, SearchRange range, double noise);

/// The same for one character alone.
float MatchGlyph(const CellInk& ink, std::size_t character, int blur, SearchRange range,
                 double noise);

}  // namespace conduit
