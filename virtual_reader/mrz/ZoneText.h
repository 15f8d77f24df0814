#pragma once

#include <string>
#include <vector>

#include "virtual_reader/mrz/ZoneCells.h"

namespace conduit {

/// What is made of the cells of a zone.
struct ZoneReading {
  std::vector<std::string> lines;
  /// Whether this is what stands there, as far as can be known. Check digits alone
  /// protect weakly: they cannot tell G from 6, nor K from a filler, nor anything in
  /// names. So each cell must be like its character, and clearly less like any that
  /// the check digits would let pass in its place.
  bool isSure = false;
};

/// Reads the characters that the fields of the zone's format admit. Where the check
/// digits do not match, a character that was hardly preferred to another may be
/// mended by them; what was surely read is not, and stays as it is printed.
ZoneReading ReadText(const ZoneCells& cells);

}  // namespace conduit
