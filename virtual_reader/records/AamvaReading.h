#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "interfaces/ReaderAamvaData.h"

namespace conduit {

/// What a reader makes of a driving licence's barcode.
struct AamvaReading {
  ReaderAamvaData record;
  std::vector<std::string> warnings;  ///< what was read although it is not as the standard has it
};

/// Whether a barcode's text begins as those of driving licences do.
bool IsAamva(std::string_view text);

/// Reads the text of a barcode after the AAMVA DL/ID Card Design Standard, the
/// editions since 2000. Throws std::invalid_argument when the text is none, or
/// when an element does not fit the record.
AamvaReading ReadAamva(std::string_view text);

}  // namespace conduit
