#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <conduit/ReaderAamvaData.h>

namespace conduit {

/// What a reader makes of a driving licence's barcode.
struct AamvaReading {
  ReaderAamvaData record;
  /// What was read although it is not as the standard has it, and the elements that
  /// could not be read and are left out, each with its name and the reason.
  std::vector<std::string> warnings;
};

/// Whether a barcode's text begins as those of driving licences do.
bool IsAamva(std::string_view text);

/// Reads the text of a barcode after the AAMVA DL/ID Card Design Standard, the
/// editions since 2000. Throws std::invalid_argument when the text is none.
AamvaReading ReadAamva(std::string_view text);

}  // namespace conduit
