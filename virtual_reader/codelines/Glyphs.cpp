#include "virtual_reader/codelines/Glyphs.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "virtual_reader/codelines/OcrBFont.h"

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

/// The characters' pitch and the middle of their height, in units of the em of
/// the typeface (ISO 1073-2: OCR-B is of one pitch).
constexpr double PitchOfEm = 0.723;
constexpr double MiddleAboveBaseline = 0.487;  // in pitches

/// The standard deviations, in samples, that the glyphs are blurred by: a sharp
/// print, what scanners make of it, and an image of few dots.
constexpr std::array<double, BlurCount> Blurs = {0.6, 1.4, 2.4};

/// A glyph as what its ink differs from its mean.
struct Template {
  std::array<std::int16_t, GlyphSamples> difference;
  float norm;  ///< the root of the sum of squares
};

using Canvas = std::vector<double>;

/// Room for the blur, which reaches beyond the grid.
constexpr int CanvasBorder = 10;
constexpr int CanvasWidth = GlyphWidth + 2 * CanvasBorder;
constexpr int CanvasHeight = GlyphHeight + 2 * CanvasBorder;

std::size_t Index(int x, int y) {
  return static_cast<std::size_t>(y) * CanvasWidth + static_cast<std::size_t>(x);
}

Canvas DrawGlyph(const stbtt_fontinfo& font, char character) {
  const float scale =
      stbtt_ScaleForMappingEmToPixels(&font, static_cast<float>(GlyphWidth / PitchOfEm));
  int advance = 0;
  int bearing = 0;
  stbtt_GetCodepointHMetrics(&font, character, &advance, &bearing);
  const double left = CanvasWidth / 2.0 - advance * static_cast<double>(scale) / 2;
  const double baseline = CanvasHeight / 2.0 + MiddleAboveBaseline * GlyphWidth;
  const double shiftX = left - std::floor(left);
  const double shiftY = baseline - std::floor(baseline);
  int x0 = 0;
  int y0 = 0;
  int x1 = 0;
  int y1 = 0;
  stbtt_GetCodepointBitmapBoxSubpixel(&font, character, scale, scale, static_cast<float>(shiftX),
                                      static_cast<float>(shiftY), &x0, &y0, &x1, &y1);
  std::vector<unsigned char> drawn(static_cast<std::size_t>(x1 - x0) *
                                   static_cast<std::size_t>(y1 - y0));
  stbtt_MakeCodepointBitmapSubpixel(&font, drawn.data(), x1 - x0, y1 - y0, x1 - x0, scale, scale,
                                    static_cast<float>(shiftX), static_cast<float>(shiftY),
                                    character);
  Canvas canvas(Index(0, CanvasHeight));
  std::size_t next = 0;
  for (int y = y0; y < y1; ++y) {
    for (int x = x0; x < x1; ++x) {
      const int column = std::clamp(static_cast<int>(std::floor(left)) + x, 0, CanvasWidth - 1);
      const int row = std::clamp(static_cast<int>(std::floor(baseline)) + y, 0, CanvasHeight - 1);
      canvas[Index(column, row)] = drawn[next++];
    }
  }
  return canvas;
}

/// Along one direction; the second time along the other.
Canvas Blurred(const Canvas& canvas, double deviation, int stepX, int stepY) {
  const int reach = static_cast<int>(std::ceil(3 * deviation));
  std::vector<double> weights;
  double sum = 0;
  for (int i = -reach; i <= reach; ++i) {
    weights.push_back(std::exp(-i * i / (2 * deviation * deviation)));
    sum += weights.back();
  }
  const double* const middle = weights.data() + reach;
  Canvas blurred(canvas.size());
  for (int y = 0; y < CanvasHeight; ++y) {
    for (int x = 0; x < CanvasWidth; ++x) {
      for (int i = -reach; i <= reach; ++i) {
        const int fromX = x + i * stepX;
        const int fromY = y + i * stepY;
        if (fromX >= 0 && fromX < CanvasWidth && fromY >= 0 && fromY < CanvasHeight) {
          blurred[Index(x, y)] += canvas[Index(fromX, fromY)] * middle[i] / sum;
        }
      }
    }
  }
  return blurred;
}

Template TemplateOf(const Canvas& canvas) {
  const auto inkAt = [&canvas](int i) {
    return canvas[Index(CanvasBorder + i % GlyphWidth, CanvasBorder + i / GlyphWidth)];
  };
  double sum = 0;
  for (int i = 0; i < GlyphSamples; ++i) {
    sum += inkAt(i);
  }
  Template result = {};
  double squares = 0;
  for (int i = 0; i < GlyphSamples; ++i) {
    const auto difference = static_cast<std::int16_t>(std::lround(inkAt(i) - sum / GlyphSamples));
    result.difference[static_cast<std::size_t>(i)] = difference;
    squares += difference * difference;
  }
  result.norm = static_cast<float>(std::sqrt(squares));
  return result;
}

using Templates = std::array<std::array<Template, ZoneCharacterCount>, BlurCount>;

std::unique_ptr<const Templates> DrawTemplates() {
  auto templates = std::make_unique<Templates>();
  stbtt_fontinfo font = {};
  stbtt_InitFont(&font, OcrBFont, 0);
  for (std::size_t c = 0; c < ZoneCharacterCount; ++c) {
    const Canvas drawn = DrawGlyph(font, ZoneCharacters[c]);
    for (std::size_t blur = 0; blur < Blurs.size(); ++blur) {
      (*templates)[blur][c] =
          TemplateOf(Blurred(Blurred(drawn, Blurs[blur], 1, 0), Blurs[blur], 0, 1));
    }
  }
  return templates;
}

const std::array<Template, ZoneCharacterCount>& TemplatesOf(int blur) {
  static const std::unique_ptr<const Templates> templates = DrawTemplates();
  return (*templates)[static_cast<std::size_t>(blur)];
}

/// The part of a cell that a glyph is laid on.
class Window {
 public:
  Window(const CellInk& ink, int x, int y, double noise) {
    const int left = CellMargin + x;
    const int top = CellMargin + y;
    const auto* from = &ink.rows[static_cast<std::size_t>(top)];
    for (std::size_t row = 0; row < GlyphHeight; ++row, ++from) {
      std::memcpy(&samples[row * GlyphWidth], from->data() + left,
                  GlyphWidth * sizeof(std::int16_t));
    }
    unsigned sum = 0;
    unsigned squares = 0;
    for (const int sample : samples) {
      sum += static_cast<unsigned>(sample);
      squares += static_cast<unsigned>(sample * sample);
    }
    const double mean = static_cast<double>(sum) / GlyphSamples;
    deviation = static_cast<float>(std::sqrt(squares - mean * sum + noise));
  }

  /// The correlation, normalised.
  float LikenessTo(const Template& glyph) const {
    // Unsigned, as checks for an overflow that cannot be would keep the compiler from
    // taking several at once.
    unsigned product = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
      product += static_cast<unsigned>(samples[i] * glyph.difference[i]);
    }
    return static_cast<float>(static_cast<int>(product)) / (deviation * glyph.norm);
  }

 private:
  std::array<std::int16_t, GlyphSamples> samples;
  float deviation;
};

}  // namespace

GlyphMatch MatchGlyphs(const CellInk& ink, int blur, Reach reach, double noise) {
  const auto& templates = TemplatesOf(blur);
  GlyphMatch match = {};
  match.likeness.fill(-1);
  for (int y = -reach.y; y <= reach.y; y += reach.step) {
    for (int x = -reach.x; x <= reach.x; x += reach.step) {
      const Window window(ink, x, y, noise);
      for (std::size_t c = 0; c < ZoneCharacterCount; ++c) {
        const float likeness = window.LikenessTo(templates[c]);
        if (likeness > match.Best()) {
          match.best = c;
          match.x = x;
          match.y = y;
        }
        match.likeness[c] = std::max(match.likeness[c], likeness);
      }
    }
  }
  return match;
}

float MatchGlyph(const CellInk& ink, std::size_t character, int blur, Reach reach, double noise) {
  const Template& glyph = TemplatesOf(blur)[character];
  float likeness = -1;
  for (int y = -reach.y; y <= reach.y; y += reach.step) {
    for (int x = -reach.x; x <= reach.x; x += reach.step) {
      likeness = std::max(likeness, Window(ink, x, y, noise).LikenessTo(glyph));
    }
  }
  return likeness;
}

}  // namespace conduit
