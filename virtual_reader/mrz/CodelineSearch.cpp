#include "virtual_reader/mrz/CodelineSearch.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "virtual_reader/mrz/MrzCandidates.h"
#include "virtual_reader/mrz/MrzCells.h"
#include "virtual_reader/mrz/MrzText.h"

namespace conduit {
namespace {

/// In pixels, of a page: less has no room for an MRZ.
constexpr int ShortestSide = 60;

/// Other print is told from an MRZ by its cells, at the price of comparing them.
constexpr std::size_t MostCandidatesTried = 4;

/// The mean similarity of an MRZ, though it be damaged; print of other typefaces has less.
constexpr double SimilarityOfMrz = 0.62;

std::string PlaceOf(const MrzCandidate& candidate) {
  double left = 1e9;
  double top = 1e9;
  double right = 0;
  double bottom = 0;
  for (const TextLine& line : candidate) {
    for (const int column : {0, line.columns - 1}) {
      const auto [x, y] = line.course.At(column);
      left = std::min(left, x - line.glyphHeight / 2);
      right = std::max(right, x + line.glyphHeight / 2);
      top = std::min(top, y - line.glyphHeight / 2);
      bottom = std::max(bottom, y + line.glyphHeight / 2);
    }
  }
  const auto text = [](double value) { return std::to_string(std::max(0L, std::lround(value))); };
  return text(left) + ", " + text(top) + " to " + text(right) + ", " + text(bottom);
}

}  // namespace

CodelineFindings SearchCodeline(const PageImage& page) {
  CodelineFindings findings;
  if (std::min(page.width, page.height) < ShortestSide) {
    return findings;
  }
  double similarity = SimilarityOfMrz;
  std::vector<MrzCandidate> candidates = FindMrzCandidates(page);
  candidates.resize(std::min(candidates.size(), MostCandidatesTried));
  for (const MrzCandidate& candidate : candidates) {
    const MrzCells cells = ReadCells(page, candidate);
    MrzText text = ReadText(cells);
    if (text.isConfident) {
      return {std::move(text.lines), {}};
    }
    if (cells.similarity > similarity) {
      similarity = cells.similarity;
      findings.failures = {"a codeline of " + std::to_string(cells.lines.size()) +
                           " lines cannot be read with certainty, at " + PlaceOf(candidate)};
    }
  }
  return findings;
}

}  // namespace conduit
