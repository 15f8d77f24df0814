#include "virtual_reader/mrz/Glyphs.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

namespace conduit {
namespace {

/// Of each character in its order how much of each sample its glyph inks: 0 to 255.
constexpr std::uint8_t Glyphs[MrzCharacterCount][GlyphSamples] = {
#include "virtual_reader/mrz/OcrBGlyphs.inc"
};

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

Canvas CanvasOf(const std::uint8_t (&glyph)[GlyphSamples]) {
  Canvas canvas(Index(0, CanvasHeight));
  for (int i = 0; i < GlyphSamples; ++i) {
    canvas[Index(CanvasBorder + i % GlyphWidth, CanvasBorder + i / GlyphWidth)] = glyph[i];
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
  const double* const centre = weights.data() + reach;
  Canvas blurred(canvas.size());
  for (int y = 0; y < CanvasHeight; ++y) {
    for (int x = 0; x < CanvasWidth; ++x) {
      for (int i = -reach; i <= reach; ++i) {
        const int fromX = x + i * stepX;
        const int fromY = y + i * stepY;
        if (fromX >= 0 && fromX < CanvasWidth && fromY >= 0 && fromY < CanvasHeight) {
          blurred[Index(x, y)] += canvas[Index(fromX, fromY)] * centre[i] / sum;
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

using Templates = std::array<std::array<Template, MrzCharacterCount>, BlurCount>;

std::unique_ptr<const Templates> MakeTemplates() {
  auto templates = std::make_unique<Templates>();
  for (std::size_t c = 0; c < MrzCharacterCount; ++c) {
    const Canvas glyph = CanvasOf(Glyphs[c]);
    for (std::size_t blur = 0; blur < Blurs.size(); ++blur) {
      (*templates)[blur][c] =
          TemplateOf(Blurred(Blurred(glyph, Blurs[blur], 1, 0), Blurs[blur], 0, 1));
    }
  }
  return templates;
}

const std::array<Template, MrzCharacterCount>& TemplatesOf(int blur) {
  static const std::unique_ptr<const Templates> templates = MakeTemplates();
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

  /// Returns the normalised correlation.
  float SimilarityTo(const Template& glyph) const {
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

GlyphMatch MatchGlyphs(const CellInk& ink, int blur, SearchRange range, double noise) {
  const auto& templates = TemplatesOf(blur);
  GlyphMatch match = {};
  match.similarity.fill(-1);
  for (int y = -range.y; y <= range.y; y += range.step) {
    for (int x = -range.x; x <= range.x; x += range.step) {
      const Window window(ink, x, y, noise);
      for (std::size_t c = 0; c < MrzCharacterCount; ++c) {
        const float similarity = window.SimilarityTo(templates[c]);
        if (similarity > match.Best()) {
          match.best = c;
          match.x = x;
          match.y = y;
        }
        match.similarity[c] = std::max(match.similarity[c], similarity);
      }
    }
  }
  return match;
}

float MatchGlyph(const CellInk& ink, std::size_t character, int blur, SearchRange range,
                 double noise) {
  const Template& glyph = TemplatesOf(blur)[character];
  float similarity = -1;
  for (int y = -range.y; y <= range.y; y += range.step) {
    for (int x = -range.x; x <= range.x; x += range.step) {
      similarity = std::max(similarity, Window(ink, x, y, noise).SimilarityTo(glyph));
    }
  }
  return similarity;
}

}  // namespace conduit
