#include "virtual_reader/mrz/LineCandidates.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

#include "virtual_reader/pixels/Median.h"

namespace conduit {
namespace {

// What has no other source was chosen on pages of tests/virtual_reader/mrz/draw-pages, seed 11.

// A glyph of a line. Its width is a part of its height: an I has a tenth, two characters that
// touch each other more than one and a half.
constexpr double LeastGlyphHeight = 7;  // pixels
constexpr double WidestGlyph = 1.5;
constexpr double NarrowestGlyph = 0.1;

// Two glyphs beside each other, in heights of the higher one. In OCR-B size 1 the pitch is the
// height of a capital (ICAO Doc 9303-3); other print is narrower, and a glyph may be missing.
constexpr double FurthestDown = 0.35;
constexpr double NearestAlong = 0.45;
constexpr double FurthestAlong = 1.9;
constexpr double SearchedAlong = 2.2;
constexpr double LeastOfHeights = 0.55;
/// What an offset down, or a difference of heights, costs against one along the line.
constexpr double CostOfMisfit = 2;

constexpr std::size_t FewestLinked = 4;
constexpr double SteepestSlope = 0.2;
constexpr std::size_t FewestGlyphs = 6;
constexpr double LeastEvenness = 0.5;

// The pitch is looked for around the median step, in so many trials.
constexpr double PitchTolerance = 0.1;
constexpr int PitchTrials = 66;

// Two pieces of one line: how far apart they are, in pitches, how far off each other's line, in
// heights of a glyph, and how unlike.
constexpr double WidestGap = 14;
constexpr double FurthestOffLine = 0.4;
constexpr double MostHeightDifference = 0.35;
constexpr double MostPitchDifference = 0.1;
constexpr double LeastEvennessOfJoined = 0.55;

// The fit of a curve, in pitches: steps that correct the pitch, and by how much; characters that
// run together, whose centre is anywhere; and how quickly a point off the curve loses weight.
constexpr double MostStepError = 0.2;
constexpr double PitchCorrection = 0.1;
constexpr double WidestSingle = 1.25;
constexpr double WeightOfTouching = 0.02;
constexpr double WeightLoss = 60;
constexpr int FitRounds = 4;
constexpr int NewtonSteps = 3;

void SortByX(std::vector<GlyphCandidate>* glyphs) {
  std::sort(glyphs->begin(), glyphs->end(),
            [](const GlyphCandidate& a, const GlyphCandidate& b) { return a.x < b.x; });
}

/// Fits a straight line by least squares.
void FitSlope(LineCandidate* line) {
  const auto count = static_cast<double>(line->glyphs.size());
  double x = 0;
  double y = 0;
  double xx = 0;
  double xy = 0;
  for (const GlyphCandidate& glyph : line->glyphs) {
    x += glyph.x;
    y += glyph.y;
    xx += glyph.x * glyph.x;
    xy += glyph.x * glyph.y;
  }
  constexpr double notZero = 1e-9;
  line->slope = (count * xy - x * y) / std::max(notZero, count * xx - x * x);
  line->offset = (y - line->slope * x) / count;
}

/// The mean of unit vectors at phases, whose length is 1 where all phases are alike.
class PhaseMean {
 public:
  void Add(double phase) {
    real += std::cos(phase);
    imaginary += std::sin(phase);
    ++count;
  }
  double Length() const { return std::hypot(real, imaginary) / count; }

 private:
  double real = 0;
  double imaginary = 0;
  double count = 0;
};

double EvennessAt(const LineCandidate& line, double pitch) {
  PhaseMean mean;
  for (const GlyphCandidate& glyph : line.glyphs) {
    mean.Add(glyph.x / pitch * 2 * std::numbers::pi);
  }
  return mean.Length();
}

void Fit(LineCandidate* line) {
  SortByX(&line->glyphs);
  FitSlope(line);
  std::vector<double> steps;
  std::vector<double> heights;
  for (std::size_t i = 0; i < line->glyphs.size(); ++i) {
    heights.push_back(line->glyphs[i].height);
    if (i > 0) {
      steps.push_back(line->glyphs[i].x - line->glyphs[i - 1].x);
    }
  }
  line->glyphHeight = Median(std::move(heights));
  const double guess = Median(std::move(steps));
  line->evenness = 0;
  for (int i = 0; i <= PitchTrials; ++i) {
    const double pitch = guess * (1 - PitchTolerance + 2 * PitchTolerance * i / PitchTrials);
    if (const double evenness = EvennessAt(*line, pitch); evenness > line->evenness) {
      line->evenness = evenness;
      line->pitch = pitch;
    }
  }
}

/// Returns whether two glyphs, the right one after the left one, can be adjacent characters of
/// a line; `*cost` is lower for likelier pairs.
bool AreNeighbours(const GlyphCandidate& left, const GlyphCandidate& right, double* cost) {
  const double height = std::max(left.height, right.height);
  const double along = right.x - left.x;
  const double down = std::abs(right.y - left.y);
  *cost = along + CostOfMisfit * down + CostOfMisfit * std::abs(left.height - right.height);
  return down <= FurthestDown * height && along >= NearestAlong * height &&
         along <= FurthestAlong * height &&
         std::min(left.height, right.height) >= LeastOfHeights * height;
}

/// Of each glyph its nearest neighbours; none: the number of glyphs.
struct Links {
  struct Link {
    std::size_t glyph;
    double cost = 1e9;
  };

  explicit Links(const std::vector<GlyphCandidate>& glyphs)
      : none(glyphs.size()), next(glyphs.size(), {none}), before(glyphs.size(), {none}) {
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
      for (std::size_t j = i + 1;
           j < glyphs.size() && glyphs[j].x - glyphs[i].x < SearchedAlong * glyphs[i].height; ++j) {
        double cost = 0;
        if (!AreNeighbours(glyphs[i], glyphs[j], &cost)) {
          continue;
        }
        if (cost < next[i].cost) {
          next[i] = {j, cost};
        }
        if (cost < before[j].cost) {
          before[j] = {i, cost};
        }
      }
    }
  }

  /// Returns the glyph on the right that has this one as its nearest on the left.
  std::size_t After(std::size_t glyph) const {
    const std::size_t other = next[glyph].glyph;
    return other != none && before[other].glyph == glyph ? other : none;
  }
  bool IsFirst(std::size_t glyph) const {
    return before[glyph].glyph == none || After(before[glyph].glyph) != glyph;
  }

  std::size_t none;
  std::vector<Link> next;
  std::vector<Link> before;
};

/// Links the glyphs that are each other's nearest neighbours.
std::vector<LineCandidate> LinkNeighbours(std::vector<GlyphCandidate> glyphs) {
  std::erase_if(glyphs, [](const GlyphCandidate& glyph) {
    return glyph.height < LeastGlyphHeight || glyph.width > WidestGlyph * glyph.height ||
           glyph.width < NarrowestGlyph * glyph.height;
  });
  SortByX(&glyphs);
  const Links links(glyphs);
  std::vector<LineCandidate> lines;
  for (std::size_t i = 0; i < glyphs.size(); ++i) {
    if (!links.IsFirst(i)) {
      continue;
    }
    LineCandidate line;
    for (std::size_t j = i; j != links.none; j = links.After(j)) {
      line.glyphs.push_back(glyphs[j]);
    }
    if (line.glyphs.size() >= FewestLinked) {
      Fit(&line);
      if (std::abs(line.slope) < SteepestSlope) {
        lines.push_back(std::move(line));
      }
    }
  }
  return lines;
}

/// Returns whether two candidates can be pieces of one line.
bool CanJoin(const LineCandidate& a, const LineCandidate& b) {
  const bool isRight = b.Left() > a.Right();
  const double gap = isRight ? b.Left() - a.Right() : a.Left() - b.Right();
  const GlyphCandidate& nearest = isRight ? b.glyphs.front() : b.glyphs.back();
  return a.glyphs.size() >= FewestGlyphs && gap > 0 && gap < WidestGap * a.pitch &&
         std::abs(a.At(nearest.x) - nearest.y) < FurthestOffLine * a.glyphHeight &&
         std::abs(b.glyphHeight - a.glyphHeight) < MostHeightDifference * a.glyphHeight &&
         (b.glyphs.size() < FewestGlyphs ||
          std::abs(b.pitch - a.pitch) < MostPitchDifference * a.pitch);
}

void JoinPieces(std::vector<LineCandidate>* lines) {
  std::sort(lines->begin(), lines->end(), [](const LineCandidate& a, const LineCandidate& b) {
    return a.glyphs.size() > b.glyphs.size();
  });
  for (std::size_t i = 0; i < lines->size(); ++i) {
    for (std::size_t j = i + 1; j < lines->size(); ++j) {
      LineCandidate& line = (*lines)[i];
      const LineCandidate& piece = (*lines)[j];
      if (!CanJoin(line, piece)) {
        continue;
      }
      LineCandidate joined = line;
      joined.glyphs.insert(joined.glyphs.end(), piece.glyphs.begin(), piece.glyphs.end());
      Fit(&joined);
      if (joined.evenness > LeastEvennessOfJoined &&
          std::abs(joined.pitch - line.pitch) < MostPitchDifference * line.pitch) {
        line = std::move(joined);
        lines->erase(lines->begin() + static_cast<std::ptrdiff_t>(j));
        j = i;  // a piece beyond the reach of the shorter line may be within that of this one
      }
    }
  }
}

/// Fits curves to the glyphs. Counts the columns from glyph to glyph, so that a pitch that
/// changes along the line does no harm.
TextLine FitTextLine(const LineCandidate& line) {
  std::vector<CurvePoint> x;
  std::vector<CurvePoint> y;
  double column = 0;
  double pitch = line.pitch;
  for (std::size_t i = 0; i < line.glyphs.size(); ++i) {
    const GlyphCandidate& glyph = line.glyphs[i];
    if (i > 0) {
      const double step = glyph.x - line.glyphs[i - 1].x;
      const double columns = std::max(1.0, std::round(step / pitch));
      column += columns;
      if (std::abs(step / columns - pitch) < MostStepError * pitch) {
        pitch += PitchCorrection * (step / columns - pitch);
      }
    }
    const double weight = glyph.width > WidestSingle * line.pitch ? WeightOfTouching : 1;
    x.push_back({column, glyph.x, weight});
    y.push_back({column, glyph.y, weight});
  }
  TextLine fitted = {{}, line.glyphHeight, static_cast<int>(column) + 1};
  for (int round = 0; round < FitRounds; ++round) {
    fitted.course = {FitCurve(x), FitCurve(y)};
    for (std::size_t i = 0; i < x.size(); ++i) {
      const Point point = fitted.course.At(x[i].column);
      const double off = std::hypot(x[i].value - point.x, y[i].value - point.y) / pitch;
      x[i].weight = y[i].weight = 1 / (1 + WeightLoss * off * off);
    }
  }
  return fitted;
}

/// Fits the curve, and measures the evenness on it too: a perspective bends the line.
void FitOnCurve(LineCandidate* line) {
  line->line = FitTextLine(*line);
  const LineCurve& x = line->line.course.x;
  PhaseMean mean;
  double column = 0;
  for (const GlyphCandidate& glyph : line->glyphs) {
    for (int i = 0; i < NewtonSteps; ++i) {
      const double slope = x.SlopeAt(column);
      column -= (x.At(column) - glyph.x) / (std::abs(slope) > 1 ? slope : 1);
    }
    mean.Add(2 * std::numbers::pi * column);
  }
  if (mean.Length() > line->evenness) {
    line->evenness = mean.Length();
    line->pitch = x.SlopeAt(line->line.Centre());
    line->line = FitTextLine(*line);
  }
}

}  // namespace

std::vector<LineCandidate> FindLineCandidates(std::vector<GlyphCandidate> glyphs) {
  std::vector<LineCandidate> lines = LinkNeighbours(std::move(glyphs));
  JoinPieces(&lines);
  std::for_each(lines.begin(), lines.end(), [](LineCandidate& line) { FitOnCurve(&line); });
  std::erase_if(lines, [](const LineCandidate& line) {
    return line.glyphs.size() < FewestGlyphs || line.evenness < LeastEvenness;
  });
  return lines;
}

}  // namespace conduit
