#pragma once

#include <vector>

#include "virtual_reader/barcodes/SymbolCandidates.h"
#include "virtual_reader/pixels/Contrast.h"

namespace conduit {

/// The modules across the squares that are looked for. The bull's eye of a compact Aztec Code
/// has nine (ISO/IEC 24778); the outermost ring may touch what is beside it.
inline constexpr int BullsEyeModules = 7;

/// Finds concentric squares as in the centre of an Aztec Code, at any angle.
/// @param printed  where to look
std::vector<SymbolCandidate> FindBullsEyes(const PageImage& image, const Rectangle& printed,
                                           const Contrast& contrast);

}  // namespace conduit
