#pragma once

#include <string>
#include <vector>

#include "virtual_reader/mrz/MrzCells.h"

namespace conduit {

/// The text of an MRZ.
struct MrzText {
  std::vector<std::string> lines;
  /// Whether these are the characters that are printed, as far as can be known. Check digits alone
  /// protect weakly: they cannot tell G from 6, nor K from a filler, nor anything in names. So
  /// each cell must be similar to its character, and clearly less to any that the check digits
  /// would let pass in its place.
  bool isConfident = false;
};

/// Recognises the characters that the fields of the MRZ's format admit. Where the check digits do
/// not match, they may correct a character that was hardly preferred to another; a character that
/// was recognised with confidence stays as it is printed.
MrzText ReadText(const MrzCells& cells);

}  // namespace conduit
