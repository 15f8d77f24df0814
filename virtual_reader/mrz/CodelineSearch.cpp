#include "virtual_reader/mrz/CodelineSearch.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "virtual_reader/mrz/TextRows.h"
#include "virtual_reader/mrz/ZoneCells.h"
#include "virtual_reader/mrz/ZoneText.h"

namespace conduit {
namespace {

/// Below this, nothing is a zone or worth its while.
constexpr int ShortestSide = 60;

/// Rows of print that are not of a zone are told by their cells, at the price of
/// looking at them.
constexpr std::size_t MostGroupsTried = 4;

/// What print of OCR-B comes to, though it be damaged; other print does not.
constexpr double LikenessOfZone = 0.62;

std::string PlaceOf(const RowGroup& group) {
  double left = 1e9;
  double top = 1e9;
  double right = 0;
  double bottom = 0;
  for (const TextRow& row : group) {
    for (const int column : {0, row.columns - 1}) {
      left = std::min(left, row.x.At(column) - row.size / 2);
      right = std::max(right, row.x.At(column) + row.size / 2);
      top = std::min(top, row.y.At(column) - row.size / 2);
      bottom = std::max(bottom, row.y.At(column) + row.size / 2);
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
  double likeness = LikenessOfZone;
  std::vector<RowGroup> groups = FindRowGroups(page);
  groups.resize(std::min(groups.size(), MostGroupsTried));
  for (const RowGroup& group : groups) {
    const ZoneCells cells = ReadCells(page, group);
    ZoneReading reading = ReadText(cells);
    if (reading.isSure) {
      return {std::move(reading.lines), {}};
    }
    if (cells.likeness > likeness) {
      likeness = cells.likeness;
      findings.failures = {"a codeline of " + std::to_string(cells.lines.size()) +
                           " lines cannot be read with certainty, at " + PlaceOf(group)};
    }
  }
  return findings;
}

}  // namespace conduit
