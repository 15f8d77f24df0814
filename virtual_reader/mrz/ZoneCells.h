#pragma once

#include <array>
#include <vector>

#include "virtual_reader/mrz/Glyphs.h"
#include "virtual_reader/mrz/TextRows.h"

namespace conduit {

/// A character position of a zone: how alike what stands there is to each character.
using ZoneCell = std::array<float, ZoneCharacterCount>;

/// The cells of a zone, line by line; nothing where the rows are no zone.
struct ZoneCells {
  std::vector<std::vector<ZoneCell>> lines;
  double likeness = 0;  ///< of the cells to what each is most like, the mean
  double beyond = 0;    ///< the same of the likest place just before or behind a line
};

/// Lays a grid of cells over the rows, either way up, and compares each with the
/// characters of the typeface OCR-B.
ZoneCells ReadCells(const PageImage& page, const RowGroup& group);

}  // namespace conduit
