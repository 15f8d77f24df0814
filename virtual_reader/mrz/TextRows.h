#pragma once

#include <vector>

#include "virtual_reader/mrz/Chains.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Rows that lie below each other as the lines of a zone do: two or three, from
/// above to below or, where the page lies on its head, the other way round.
using RowGroup = std::vector<TextRow>;

/// The groups of rows that may be machine-readable zones, the likeliest first,
/// upright or turned by quarters.
std::vector<RowGroup> FindRowGroups(const PageImage& page);

}  // namespace conduit
