#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <conduit/ReaderAamvaData.h>

namespace conduit {

/// The parsed barcode of a driving licence.
struct AamvaReading {
  ReaderAamvaData record;
  /// Deviations from the standard, and data elements that could not be parsed and are left
  /// out, each with its element ID and the reason.
  std::vector<std::string> warnings;
};

/// Returns whether a barcode's text begins with an AAMVA header.
bool IsAamva(std::string_view text);

/// Parses the text of an AAMVA DL/ID Card Design Standard barcode, editions since 2000.
/// Throws std::invalid_argument when the text has no such header or no data element.
AamvaReading ReadAamva(std::string_view text);

}  // namespace conduit
