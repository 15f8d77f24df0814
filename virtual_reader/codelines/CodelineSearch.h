#pragma once

#include <string>
#include <vector>

#include "virtual_reader/images/PageImage.h"

namespace conduit {

/// What a search of one image for a machine-readable zone has found.
struct CodelineFindings {
  std::vector<std::string> lines;     ///< of a zone that was read surely; else none
  std::vector<std::string> failures;  ///< where a zone stands that was not, not what it says
};

/// Looks for a zone of ICAO Doc 9303 (TD1, TD2, TD3, MRV-A, MRV-B), upright or turned
/// by quarters, and reads it when that can be done without doubt. Any thread.
CodelineFindings SearchCodeline(const PageImage& page);

}  // namespace conduit
