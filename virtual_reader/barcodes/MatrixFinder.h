#pragma once

#include <vector>

#include "virtual_reader/barcodes/EdgeGrid.h"
#include "virtual_reader/barcodes/SymbolCandidates.h"

namespace conduit {

/// Finds regions with edges as dense as those of a matrix symbol (Data Matrix, QR Code, Aztec
/// Code), with a quiet zone around each.
std::vector<SymbolCandidate> FindMatrixSymbols(const PageImage& image, const EdgeGrid& edges);

}  // namespace conduit
