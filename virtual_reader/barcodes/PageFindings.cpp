#include "virtual_reader/barcodes/PageFindings.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace conduit {
namespace {

/// A scan across a scratch fails where another one reads.
void DropFailuresOfReadSymbols(std::vector<PageFinding>* found) {
  const std::vector<PageFinding> all = *found;
  std::erase_if(*found, [&all](const PageFinding& one) {
    return !one.IsRead() && std::any_of(all.begin(), all.end(), [&](const PageFinding& other) {
      return other.IsRead() && IsSameSymbol(one, other);
    });
  });
}

/// From top to bottom; a symbol that begins above the centre of a row's first is in the
/// same row, from left to right.
void SortByPlace(std::vector<PageFinding>* found) {
  std::sort(found->begin(), found->end(),
            [](const PageFinding& a, const PageFinding& b) { return a.area.top < b.area.top; });
  for (auto row = found->begin(); row != found->end();) {
    const int centre = row->area.top + row->area.height / 2;
    const auto end = std::find_if(std::next(row), found->end(), [centre](const PageFinding& other) {
      return other.area.top >= centre;
    });
    std::sort(row, end,
              [](const PageFinding& a, const PageFinding& b) { return a.area.left < b.area.left; });
    row = end;
  }
}

}  // namespace

PageFindings ArrangeFindings(std::vector<PageFinding> found) {
  DropFailuresOfReadSymbols(&found);
  SortByPlace(&found);
  PageFindings findings;
  for (PageFinding& one : found) {
    if (one.IsRead()) {
      findings.barcodes.push_back({one.type, std::move(one.data)});
    } else {
      findings.failures.push_back(
          "a " + BarcodeName(one.type) + " at " + std::to_string(one.area.left) + ", " +
          std::to_string(one.area.top) + " cannot be decoded: " + one.failure);
    }
  }
  return findings;
}

}  // namespace conduit
