#pragma once

#include <cstdint>

#include "virtual_reader/pixels/Contrast.h"
#include "virtual_reader/pixels/Grid.h"

namespace conduit {

/// 1 for each cell that an edge between dark and light runs through, else 0.
using EdgeGrid = Grid<std::uint8_t>;

/// Compares means of two by two pixels, which keeps the grain of a scan from being an edge.
/// @param contrast  of the page, of which an edge has a quarter
EdgeGrid FindEdges(const PageImage& image, const Contrast& contrast);

/// Returns the pixels around all edges, with room for the quiet zone of a symbol at the rim;
/// an empty rectangle where no edge is.
Rectangle PrintedBounds(const EdgeGrid& edges, const PageImage& image);

}  // namespace conduit
