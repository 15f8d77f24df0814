#pragma once

#include <string>
#include <vector>

#include <conduit/ReaderCodelineData.h>

namespace conduit {

/// What a reader makes of the lines of a codeline.
struct CodelineReading {
  ReaderCodelineData record;
  std::vector<std::string> warnings;  ///< check digits that do not match
};

/// A record that holds the lines and nothing read from them. Throws
/// std::invalid_argument when they do not fit the record.
ReaderCodelineData UnreadCodeline(const std::vector<std::string>& lines);

/// Splits the lines of a machine-readable zone by the format of ICAO Doc 9303
/// that fits their number and lengths. Damaged characters are read as they
/// stand. Throws std::invalid_argument when no format fits.
CodelineReading ReadCodeline(const std::vector<std::string>& lines);

}  // namespace conduit
