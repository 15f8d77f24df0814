#include "virtual_reader/mrz/MrzCells.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <optional>
#include <utility>

#include "virtual_reader/mrz/MrzLines.h"
#include "virtual_reader/records/CodelineFormat.h"

namespace conduit {
namespace {

// Thresholds of similarity, and what has no other source, were chosen on pages of
// tests/virtual_reader/mrz/draw-pages, seed 11.

/// How far apart two lines begin, in pitches, from which on the first characters of one were not
/// found: a page that is sheared makes less, and the search along the line finds less.
constexpr double FurthestBegin = 2;
/// The tangent of the angle between the lines' ends and the upright.
constexpr double MostSkew = 0.45;

/// Mean similarity below which lines are no MRZ, and that which makes other ways up needless.
constexpr double LeastSimilarity = 0.4;
constexpr double ClearSimilarity = 0.8;
/// Characters of which the way up is told.
constexpr int EveryColumnForWayUp = 5;

/// Similarity of a place that is as likely within a line as beyond it.
constexpr double SimilarityOfPrint = 0.6;

// From coarse to fine, what shapes of the print are tried, and how far from the centre of its
// cell a glyph is looked for.
constexpr double CoarseScales[] = {0.88, 0.94, 1.0, 1.06, 1.12};
constexpr double FineScales[] = {0.97, 1.0, 1.03};
constexpr double FinestScales[] = {0.985, 1.0, 1.015};
constexpr ShapeSearch CoarseShape = {
    .scales = CoarseScales, .mostSlant = 0.16, .everyColumn = 3, .range = {.x = 2, .y = 2}};
constexpr ShapeSearch FineShape = {
    .scales = FineScales, .mostSlant = 0.04, .everyColumn = 2, .range = {.x = 1, .y = 1}};
constexpr ShapeSearch FinestShape = {
    .scales = FinestScales, .mostSlant = 0.02, .everyColumn = 2, .range = {.x = 1, .y = 1}};
constexpr SearchRange WholeCell = {.x = 4, .y = 4, .step = 2};
constexpr SearchRange HalfCell = {.x = 2, .y = 2, .step = 2};
constexpr SearchRange NearCentre = {.x = 2, .y = 2};
constexpr SearchRange AtCentre = {.x = 1, .y = 1};
constexpr SearchRange AlongLine = {.x = 2, .y = 1};

/// The lines as they begin below each other: of one, the first characters may not have been found.
MrzCandidate BegunTogether(MrzCandidate candidate) {
  const TextLine longest =
      *std::max_element(candidate.begin(), candidate.end(),
                        [](const TextLine& a, const TextLine& b) { return a.columns < b.columns; });
  const Point step = longest.course.StepAt(longest.Centre());
  const double pitch = longest.course.PitchAt(longest.Centre());
  const Point begin = longest.course.At(0);
  for (TextLine& line : candidate) {
    const Point own = line.course.At(0);
    const double ahead =
        ((begin.x - own.x) * step.x + (begin.y - own.y) * step.y) / (pitch * pitch);
    if (std::abs(ahead) > FurthestBegin) {
      line.course = line.course.From(std::round(ahead));
    }
  }
  return candidate;
}

/// Lines end where the edge of the paper would: how far those ends are off the upright tells how
/// far the page is sheared.
double SkewOf(const MrzCandidate& candidate) {
  double skew = 0;
  int count = 0;
  for (std::size_t i = 0; i + 1 < candidate.size(); ++i) {
    const TextLine& above = candidate[i];
    const TextLine& below = candidate[i + 1];
    if (above.columns == below.columns) {
      const Point from = above.course.At(above.Centre());
      const Point to = below.course.At(above.Centre());
      const Point step = above.course.StepAt(above.Centre());
      const double x = to.x - from.x;
      const double y = to.y - from.y;
      skew += (x * step.x + y * step.y) / (y * step.x - x * step.y);
      ++count;
    }
  }
  return count > 0 ? std::clamp(skew / count, -MostSkew, MostSkew) : 0;
}

/// Returns the lines as they are most similar to print: either way up, sheared or not. Nothing
/// when they are similar to none.
std::optional<MrzLines> MostSimilarLines(const PageImage& page, const MrzCandidate& candidate) {
  std::optional<MrzLines> best;
  double similarity = LeastSimilarity;
  std::vector<double> skews = {0};
  if (const double skew = SkewOf(candidate); skew != 0) {
    skews.push_back(skew);
  }
  const MrzCandidate begun = BegunTogether(candidate);
  for (const double skew : skews) {
    if (similarity > ClearSimilarity) {
      break;
    }
    const MrzLines lines(page, begun, skew);
    for (const MrzLines& tried : {lines, lines.UpsideDown()}) {
      const double own = MrzLines(tried).Align(WholeCell, EveryColumnForWayUp);
      if (own > similarity) {
        similarity = own;
        best = tried;
      }
    }
  }
  return best;
}

/// Where each line of a format begins, and how well that fits.
struct Placement {
  int columns = 0;  ///< of the format; 0: none
  std::vector<int> begins;
  double fit = 0;
};

/// @param print  of each line and column from StripMargin before its first on, how likely it is
///               within the line
Placement PlacementOf(const std::vector<std::vector<double>>& print, int columns) {
  Placement placement = {columns, {}, 0};
  for (const std::vector<double>& line : print) {
    double most = 0;
    int begin = 0;
    for (int at = 0; at + columns <= static_cast<int>(line.size()); ++at) {
      const double own = std::accumulate(line.begin() + at, line.begin() + at + columns, 0.0);
      if (at == 0 || own > most) {
        most = own;
        begin = at - StripMargin;
      }
    }
    placement.fit += most;
    placement.begins.push_back(begin);
  }
  return placement;
}

/// Finds where each line begins, and which length of Doc 9303 they have: a piece may be missing
/// of the lines that were found, or something else be at either end. Returns whether there is
/// such a length.
bool CutToFormat(MrzLines* lines) {
  std::vector<std::vector<double>> print(lines->Lines());
  for (std::size_t line = 0; line < lines->Lines(); ++line) {
    for (int column = -StripMargin; column < lines->Columns() + StripMargin; ++column) {
      print[line].push_back(lines->MatchAt(line, column, HalfCell).Best() - SimilarityOfPrint);
    }
  }
  Placement best;
  for (const CodelineFormat& format : CodelineFormats()) {
    const int columns = static_cast<int>(format.width);
    if (format.lines != lines->Lines() || columns > lines->Columns() + 2 * StripMargin) {
      continue;
    }
    Placement placement = PlacementOf(print, columns);
    if (best.columns == 0 || placement.fit > best.fit) {
      best = std::move(placement);
    }
  }
  if (best.columns > 0) {
    lines->Cut(best.begins, best.columns);
  }
  return best.columns > 0;
}

}  // namespace

MrzCells ReadCells(const PageImage& page, const MrzCandidate& candidate) {
  std::optional<MrzLines> lines = MostSimilarLines(page, candidate);
  if (!lines) {
    return {};
  }
  lines->Align(WholeCell);
  lines->FitShape(CoarseShape);
  lines->Align(NearCentre);
  lines->FitShape(FineShape);
  if (!CutToFormat(&*lines)) {
    return {};
  }
  lines->Align(NearCentre);
  lines->FitShape(FinestShape);
  lines->Align(AtCentre);
  MrzCells cells;
  for (std::size_t line = 0; line < lines->Lines(); ++line) {
    cells.lines.emplace_back();
    for (int column = 0; column < lines->Columns(); ++column) {
      const GlyphMatch match = lines->MatchAt(line, column, AlongLine);
      cells.lines.back().push_back(match.similarity);
      cells.similarity += match.Best();
    }
  }
  for (std::size_t line = 0; line < lines->Lines(); ++line) {
    for (const int column : {-1, lines->Columns()}) {
      cells.beyond = std::max<double>(cells.beyond, lines->MatchAt(line, column, AlongLine).Best());
    }
  }
  cells.similarity /= static_cast<double>(lines->Lines()) * lines->Columns();
  return cells;
}

}  // namespace conduit
