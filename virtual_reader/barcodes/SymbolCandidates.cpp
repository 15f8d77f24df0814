#include "virtual_reader/barcodes/SymbolCandidates.h"

#include <algorithm>

#include "virtual_reader/barcodes/BullsEyeFinder.h"
#include "virtual_reader/barcodes/EdgeGrid.h"
#include "virtual_reader/barcodes/LinearFinder.h"
#include "virtual_reader/barcodes/MatrixFinder.h"

namespace conduit {

SymbolCandidates FindSymbolCandidates(const PageImage& image, bool linearOnly) {
  // In levels of luminance: the grain of blank paper stays below.
  constexpr int leastContrast = 16;
  const Contrast contrast = ContrastOf(image);
  if (contrast.Range() < leastContrast) {
    return {};
  }
  const EdgeGrid edges = FindEdges(image, contrast);
  const Rectangle printed = PrintedBounds(edges, image);
  SymbolCandidates candidates = {printed, {}, FindLinearSymbols(image, edges, contrast), {}};
  if (!linearOnly) {
    candidates.matrix = FindMatrixSymbols(image, edges);
    candidates.bullsEyes = FindBullsEyes(image, printed, contrast);
  }
  return candidates;
}

}  // namespace conduit
