// Draws the glyphs that the recogniser compares print with: make-glyphs runs it.
//
//   draw_glyphs FONT    prints the samples of each, and lines of C++ around them

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "virtual_reader/mrz/Glyphs.h"

// The renderer is a header that becomes code in the one file that asks for it.
#define STB_TRUETYPE_IMPLEMENTATION
#define STBTT_STATIC
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#endif
#include <stb/stb_truetype.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace conduit {
namespace {

/// The pitch of the characters and the centre of their height, in units of the em of
/// the typeface (ISO 1073-2: OCR-B has one pitch).
constexpr double PitchOfEm = 0.723;
constexpr double CentreAboveBaseline = 0.487;  // in pitches

using Samples = std::array<unsigned char, GlyphSamples>;

/// Returns how much of each sample of the grid the glyph covers: 0 to 255. Returns false
/// where the glyph does not fit on the grid.
bool DrawGlyph(const stbtt_fontinfo& font, char character, Samples* samples) {
  const float scale =
      stbtt_ScaleForMappingEmToPixels(&font, static_cast<float>(GlyphWidth / PitchOfEm));
  int advance = 0;
  int bearing = 0;
  stbtt_GetCodepointHMetrics(&font, character, &advance, &bearing);
  const double left = GlyphWidth / 2.0 - advance * static_cast<double>(scale) / 2;
  const double baseline = GlyphHeight / 2.0 + CentreAboveBaseline * GlyphWidth;
  const auto shiftX = static_cast<float>(left - std::floor(left));
  const auto shiftY = static_cast<float>(baseline - std::floor(baseline));
  int x0 = 0;
  int y0 = 0;
  int x1 = 0;
  int y1 = 0;
  stbtt_GetCodepointBitmapBoxSubpixel(&font, character, scale, scale, shiftX, shiftY, &x0, &y0, &x1,
                                      &y1);
  const int column = static_cast<int>(std::floor(left)) + x0;
  const int row = static_cast<int>(std::floor(baseline)) + y0;
  const int width = x1 - x0;
  const int height = y1 - y0;
  if (width <= 0 || column < 0 || column + width > GlyphWidth || row < 0 ||
      row + height > GlyphHeight) {
    return false;
  }
  samples->fill(0);
  stbtt_MakeCodepointBitmapSubpixel(
      &font, samples->data() + std::ptrdiff_t{row} * GlyphWidth + column, width, height, GlyphWidth,
      scale, scale, shiftX, shiftY, character);
  return true;
}

int Run(const char* file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  const auto* const data = reinterpret_cast<const unsigned char*>(bytes.data());
  stbtt_fontinfo font = {};
  if (bytes.empty() || stbtt_InitFont(&font, data, 0) == 0) {
    std::fprintf(stderr, "draw_glyphs: %s is no font\n", file);
    return 1;
  }
  for (const char character : MrzCharacters) {
    Samples samples = {};
    if (!DrawGlyph(font, character, &samples)) {
      std::fprintf(stderr, "draw_glyphs: the glyph of %c does not fit on its grid\n", character);
      return 1;
    }
    std::printf("// %c\n{\n", character);
    for (std::size_t i = 0; i < samples.size(); ++i) {
      std::printf("%3d,%s", samples[i], (i + 1) % GlyphWidth == 0 ? "\n" : "");
    }
    std::printf("},\n");
  }
  return 0;
}

}  // namespace
}  // namespace conduit

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: draw_glyphs FONT\n");
    return 2;
  }
  return conduit::Run(argv[1]);
}
