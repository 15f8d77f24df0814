#pragma once

#include <vector>

#include "virtual_reader/barcodes/EdgeGrid.h"
#include "virtual_reader/barcodes/SymbolCandidates.h"

namespace conduit {

/// Finds regions of parallel bars, as linear symbols and PDF417 have them, at any angle. The
/// angle of a candidate crosses its bars; it has no quiet zone around it.
/// @param contrast  of the page
std::vector<SymbolCandidate> FindLinearSymbols(const PageImage& image, const EdgeGrid& edges,
                                               const Contrast& contrast);

/// Returns the bounds of the whole symbol of which a decoder has read one line: as far as each
/// row of pixels is like the one before it. The bars are upright or, of a line that is higher
/// than wide, level.
Rectangle WholeLinearSymbol(const PageImage& page, const Rectangle& line);

}  // namespace conduit
