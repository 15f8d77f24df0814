#pragma once

#include "virtual_reader/mrz/CodelineFindings.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Looks for a zone of ICAO Doc 9303 (TD1, TD2, TD3, MRV-A, MRV-B), upright or turned
/// by quarters, and reads it when that can be done without doubt. Any thread.
CodelineFindings SearchCodeline(const PageImage& page);

}  // namespace conduit
