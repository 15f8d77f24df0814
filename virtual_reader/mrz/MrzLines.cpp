#include "virtual_reader/mrz/MrzLines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "virtual_reader/pixels/Median.h"

namespace conduit {
namespace {

// Thresholds of similarity, and what has no other source, were chosen on pages of
// tests/virtual_reader/mrz/draw-pages, seed 11.

/// Of a cell that is like nothing.
constexpr int NoCharacter = -1;

/// The height of a capital of OCR-B in pitches, and the sizes that print is first taken to have:
/// how high the components are tells it roughly.
constexpr double HeightInPitches = 0.99;
constexpr double LowestPrint = 0.75;
constexpr double HighestPrint = 1.3;
constexpr double NarrowestPrint = 0.85;
constexpr double WidestPrint = 1.15;

/// Similarity from which on a character counts as recognised, and that at which its weight would
/// be none.
constexpr float Recognised = 0.5;
constexpr double SimilarityOfNoWeight = 0.45;

/// Recognised characters for a curve through a line.
constexpr std::size_t FewestForCurve = 8;
/// Pitches off the curve from which on a cell was taken for another character, and what is left
/// of its weight in each round.
constexpr double FarOffCurve = 0.11;
constexpr double WeightOfOutlier = 0.2;
constexpr int FitRounds = 3;

/// The part of the typical variation of a cell that is taken for noise, and the columns whose
/// cells are sampled for it.
constexpr double NoisePart = 0.02;
constexpr int EveryColumnForNoise = 3;

/// Fits curves to how far characters are off, in pitches, and adds them to the course.
void Move(LineCourse* course, std::vector<CurvePoint> along, std::vector<CurvePoint> across) {
  LineCourse off;
  for (int round = 0; round < FitRounds; ++round) {
    off = {FitCurve(along), FitCurve(across)};
    for (std::size_t i = 0; i < along.size(); ++i) {
      const Point point = off.At(along[i].column);
      if (std::hypot(along[i].value - point.x, across[i].value - point.y) > FarOffCurve) {
        along[i].weight *= WeightOfOutlier;
        across[i].weight *= WeightOfOutlier;
      }
    }
  }
  const double pitchX = course->x.factors[1];
  const double pitchY = course->y.factors[1];
  for (std::size_t i = 0; i < 3; ++i) {
    course->x.factors[i] += off.x.factors[i] * pitchX - off.y.factors[i] * pitchY;
    course->y.factors[i] += off.x.factors[i] * pitchY + off.y.factors[i] * pitchX;
  }
}

/// Returns the sum of squares of a cell's samples about their mean.
double VariationOf(const CellInk& ink) {
  double sum = 0;
  double squares = 0;
  for (std::size_t j = CellMargin; j < CellMargin + GlyphHeight; ++j) {
    for (std::size_t i = CellMargin; i < CellMargin + GlyphWidth; ++i) {
      const double sample = ink.rows[j][i];
      sum += sample;
      squares += sample * sample;
    }
  }
  return squares - sum * sum / GlyphSamples;
}

}  // namespace

MrzLines::MrzLines(const PageImage& page, const MrzCandidate& candidate, double skew) {
  double height = 0;
  double pitch = 0;
  for (const TextLine& line : candidate) {
    columns = std::max(columns, line.columns);
    height += line.glyphHeight;
    pitch += line.course.PitchAt(line.Centre());
  }
  for (const TextLine& line : candidate) {
    strips.push_back(Rectify(page, line, columns, skew));
  }
  shape.height = std::clamp(height / pitch / HeightInPitches, LowestPrint, HighestPrint);
  shape.width = std::clamp(shape.height, NarrowestPrint, WidestPrint);
  EstimateNoise();
}

MrzLines MrzLines::UpsideDown() const {
  MrzLines rotated = *this;
  std::reverse(rotated.strips.begin(), rotated.strips.end());
  for (LineStrip& strip : rotated.strips) {
    strip = conduit::UpsideDown(std::move(strip));
  }
  return rotated;
}

GlyphMatch MrzLines::MatchAt(std::size_t line, int column, SearchRange range) const {
  return MatchGlyphs(InkAt(strips[line], column, shape), shape.blur, range, noise);
}

double MrzLines::Align(SearchRange range, int everyColumn) {
  double sum = 0;
  int count = 0;
  recognised.assign(Lines(), std::vector<int>(static_cast<std::size_t>(columns), NoCharacter));
  for (std::size_t line = 0; line < Lines(); ++line) {
    std::vector<CurvePoint> along;
    std::vector<CurvePoint> across;
    for (int column = static_cast<int>(line) % everyColumn; column < columns;
         column += everyColumn) {
      const GlyphMatch match = MatchAt(line, column, range);
      sum += match.Best();
      ++count;
      if (match.Best() >= Recognised) {
        recognised[line][static_cast<std::size_t>(column)] = static_cast<int>(match.best);
        const double weight = std::pow(match.Best() - SimilarityOfNoWeight, 2);
        along.push_back({double(column), match.x * shape.width / GlyphWidth, weight});
        across.push_back({double(column), match.y * shape.height / GlyphWidth, weight});
      }
    }
    if (along.size() >= FewestForCurve) {
      Move(&strips[line].course, std::move(along), std::move(across));
    }
  }
  return sum / count;
}

void MrzLines::FitShape(const ShapeSearch& search) {
  double best = -1;
  const auto attempt = [&](const PrintShape& tried) {
    if (const double similarity = SimilarityWith(tried, search); similarity > best) {
      best = similarity;
      shape = tried;
    }
  };
  const auto attemptAll = [&](double PrintShape::*part, auto&& values) {
    const PrintShape start = shape;
    for (const double value : values(start.*part)) {
      PrintShape tried = start;
      tried.*part = value;
      attempt(tried);
    }
  };
  const auto scaled = [&](double size) {
    std::vector<double> sizes;
    for (const double scale : search.scales) {
      sizes.push_back(size * scale);
    }
    return sizes;
  };
  attemptAll(&PrintShape::height, scaled);
  attemptAll(&PrintShape::width, scaled);
  attemptAll(&PrintShape::slant, [&](double slant) {
    const double most = search.mostSlant;
    return std::vector<double>{slant - most, slant - most / 2, slant + most / 2, slant + most};
  });
  const PrintShape sized = shape;
  for (int blur = 0; blur < BlurCount; ++blur) {
    if (blur != sized.blur) {
      attempt({sized.width, sized.height, sized.slant, blur});
    }
  }
}

void MrzLines::Cut(const std::vector<int>& begins, int newColumns) {
  for (std::size_t line = 0; line < Lines(); ++line) {
    strips[line].course = strips[line].course.From(begins[line]);
  }
  columns = newColumns;
}

/// Returns how similar the recognised cells are to their characters with this shape.
double MrzLines::SimilarityWith(const PrintShape& tried, const ShapeSearch& search) const {
  double sum = 0;
  int count = 0;
  for (std::size_t line = 0; line < Lines(); ++line) {
    for (int column = static_cast<int>(line) % search.everyColumn; column < columns;
         column += search.everyColumn) {
      const int character = recognised[line][static_cast<std::size_t>(column)];
      if (character != NoCharacter) {
        sum += MatchGlyph(InkAt(strips[line], column, tried), static_cast<std::size_t>(character),
                          tried.blur, search.range, noise);
        ++count;
      }
    }
  }
  return count > 0 ? sum / count : -1;
}

void MrzLines::EstimateNoise() {
  std::vector<double> variations;
  for (const LineStrip& strip : strips) {
    for (int column = 0; column < columns; column += EveryColumnForNoise) {
      variations.push_back(VariationOf(InkAt(strip, column, shape)));
    }
  }
  noise = NoisePart * Median(std::move(variations)) + GlyphSamples;
}

}  // namespace conduit
