#pragma once

#include <vector>

#include "virtual_reader/mrz/LineCandidates.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Two or three lines below each other, as an MRZ has them: from above to below or, where the
/// page is upside down, the other way round.
using MrzCandidate = std::vector<TextLine>;

struct LineGroup {
  std::vector<const LineCandidate*> lines;  ///< from above to below
  double weight;                            ///< the higher, the likelier
};

/// Groups lines of one pitch that are as far apart as the lines of an MRZ.
std::vector<LineGroup> GroupLines(const std::vector<LineCandidate>& lines);

/// Returns what may be the MRZ of a page, the likeliest first, upright or rotated by quarters.
std::vector<MrzCandidate> FindMrzCandidates(const PageImage& page);

}  // namespace conduit
