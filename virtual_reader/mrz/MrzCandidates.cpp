#include "virtual_reader/mrz/MrzCandidates.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "virtual_reader/pixels/Sampling.h"

namespace conduit {
namespace {

/// Lines are looked for on at most so many pixels along the longer side, on which a character of
/// an A4 page still has fifteen.
constexpr int LongestSide = 2000;

/// Of a line that other lines are looked for around: the shortest has 30 characters.
constexpr std::size_t FewestGlyphs = 12;

// Two lines of one MRZ, in pitches of 2.54 mm. ICAO Doc 9303-3 has their centres 6.35 mm apart,
// 2.5 pitches; a perspective and a rotation change that.
constexpr double ClosestLines = 1.2;
constexpr double FurthestLines = 3.4;
/// From the first line to the third.
constexpr double FurthestInGroup = 7;
constexpr double MostSlopeDifference = 0.06;
/// As a part of the pitch, or of the distance.
constexpr double MostPitchDifference = 0.08;
constexpr double MostDistanceDifference = 0.25;

// Columns of the longest line that is found. ICAO Doc 9303 has 30 for three lines, 36 or 44 for
// two; some of a line's ends may not have been found, or something beside it been.
constexpr int FewestColumnsOfThree = 26;
constexpr int FewestColumnsOfTwo = 32;
constexpr int MostColumns = 60;
/// The columns of three lines that may be a TD1, and what that adds to a weight, which is in
/// glyphs: a TD1 comes before two of its three lines.
constexpr int MostColumnsOfTd1 = 35;
constexpr double WeightOfTd1 = 6;

struct Neighbour {
  double distance;
  const LineCandidate* line;
};

/// Returns the lines that run along one, itself among them, from above to below.
std::vector<Neighbour> NeighboursOf(const LineCandidate& seed,
                                    const std::vector<LineCandidate>& lines) {
  std::vector<Neighbour> neighbours = {{0, &seed}};
  for (const LineCandidate& other : lines) {
    if (&other == &seed || std::abs(other.slope - seed.slope) > MostSlopeDifference ||
        std::abs(other.pitch - seed.pitch) > MostPitchDifference * seed.pitch) {
      continue;
    }
    const double x = std::clamp((seed.Left() + seed.Right()) / 2, other.Left(), other.Right());
    const double distance = other.At(x) - seed.At(x);
    const double overlap =
        std::min(seed.Right(), other.Right()) - std::max(seed.Left(), other.Left());
    if (overlap > 0 && std::abs(distance) > ClosestLines * seed.pitch &&
        std::abs(distance) < FurthestInGroup * seed.pitch) {
      neighbours.push_back({distance, &other});
    }
  }
  std::sort(neighbours.begin(), neighbours.end(),
            [](const Neighbour& a, const Neighbour& b) { return a.distance < b.distance; });
  return neighbours;
}

/// Returns whether lines, the seed among them, are evenly spaced.
bool AreEvenlySpaced(const Neighbour* lines, std::size_t count, const LineCandidate& seed) {
  const double step = lines[1].distance - lines[0].distance;
  bool hasSeed = lines[0].line == &seed;
  for (std::size_t i = 1; i < count; ++i) {
    hasSeed = hasSeed || lines[i].line == &seed;
    const double distance = lines[i].distance - lines[i - 1].distance;
    if (distance <= ClosestLines * seed.pitch || distance >= FurthestLines * seed.pitch ||
        std::abs(distance - step) >= MostDistanceDifference * step) {
      return false;
    }
  }
  return hasSeed;
}

void AddGroup(std::vector<const LineCandidate*> lines, std::vector<LineGroup>* groups) {
  int columns = 0;
  double weight = 0;
  for (const LineCandidate* const line : lines) {
    columns = std::max(columns, line->line.columns);
    weight += static_cast<double>(line->glyphs.size()) * line->evenness;
  }
  const bool three = lines.size() == 3;
  if (columns < (three ? FewestColumnsOfThree : FewestColumnsOfTwo) || columns > MostColumns) {
    return;
  }
  weight = weight / static_cast<double>(lines.size()) +
           (three && columns <= MostColumnsOfTd1 ? WeightOfTd1 : 0);
  groups->push_back({std::move(lines), weight});
}

/// The glyphs as they are once the page is rotated by a quarter.
std::vector<GlyphCandidate> Rotated(std::vector<GlyphCandidate> glyphs) {
  for (GlyphCandidate& glyph : glyphs) {
    glyph = {glyph.y, -glyph.x, glyph.height, glyph.width};
  }
  return glyphs;
}

TextLine RotatedBack(TextLine line) {
  std::swap(line.course.x, line.course.y);
  for (double& factor : line.course.x.factors) {
    factor = -factor;
  }
  return line;
}

/// The line of the reduced page on the page itself.
TextLine Enlarged(TextLine line, int factor) {
  for (LineCurve* const curve : {&line.course.x, &line.course.y}) {
    for (double& one : curve->factors) {
      one *= factor;
    }
    curve->factors[0] += (factor - 1) / 2.0;
  }
  line.glyphHeight *= factor;
  return line;
}

}  // namespace

std::vector<LineGroup> GroupLines(const std::vector<LineCandidate>& lines) {
  std::vector<LineGroup> groups;
  for (const LineCandidate& seed : lines) {
    if (seed.glyphs.size() < FewestGlyphs) {
      continue;
    }
    const std::vector<Neighbour> neighbours = NeighboursOf(seed, lines);
    for (const std::size_t count : {std::size_t{3}, std::size_t{2}}) {
      for (std::size_t i = 0; i + count <= neighbours.size(); ++i) {
        std::vector<const LineCandidate*> members;
        for (std::size_t line = i; line < i + count; ++line) {
          members.push_back(neighbours[line].line);
        }
        const bool known = std::any_of(groups.begin(), groups.end(), [&members](const auto& other) {
          return other.lines == members;
        });
        if (!known && AreEvenlySpaced(&neighbours[i], count, seed)) {
          AddGroup(std::move(members), &groups);
        }
      }
    }
  }
  return groups;
}

std::vector<MrzCandidate> FindMrzCandidates(const PageImage& page) {
  const int factor =
      std::max(1, (std::max(page.width, page.height) + LongestSide - 1) / LongestSide);
  const std::vector<GlyphCandidate> glyphs =
      factor > 1 ? FindGlyphCandidates(Reduced(page, factor)) : FindGlyphCandidates(page);
  std::vector<std::pair<double, MrzCandidate>> found;
  for (const bool upright : {true, false}) {
    const std::vector<LineCandidate> lines = FindLineCandidates(upright ? glyphs : Rotated(glyphs));
    for (const LineGroup& group : GroupLines(lines)) {
      MrzCandidate candidate;
      for (const LineCandidate* const one : group.lines) {
        candidate.push_back(Enlarged(upright ? one->line : RotatedBack(one->line), factor));
      }
      found.emplace_back(group.weight, std::move(candidate));
    }
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<MrzCandidate> candidates;
  candidates.reserve(found.size());
  for (auto& [weight, candidate] : found) {
    candidates.push_back(std::move(candidate));
  }
  return candidates;
}

}  // namespace conduit
