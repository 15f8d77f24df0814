#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace conduit {

/// The characters of a machine-readable zone (ICAO Doc 9303-3, 4.1).
inline constexpr std::string_view ZoneCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789<";
inline constexpr std::size_t ZoneCharacterCount = 37;

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

/// How far from the middle of its cell a glyph is looked for, and in what steps, in
/// samples; at most CellMargin.
struct Reach {
  int x;
  int y;
  int step = 1;
};

/// How alike a cell is to each character, at the place where it is most so:
/// 1 the same, 0 nothing in common.
struct GlyphMatch {
  std::array<float, ZoneCharacterCount> likeness;
  std::size_t best;
  int x;  ///< of the best, from the middle
  int y;

  float Best() const { return likeness[best]; }
};

/// @param noise  the sum of squares of what is no print in a cell: what varies no
///               more than that is like nothing
GlyphMatch MatchGlyphs(const CellInk& ink, int blur, Reach reach, double noise);

/// The same for one character alone.
float MatchGlyph(const CellInk& ink, std::size_t character, int blur, Reach reach, double noise);

}  // namespace conduit
