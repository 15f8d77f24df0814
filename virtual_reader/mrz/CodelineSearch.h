#pragma once

#include "virtual_reader/mrz/CodelineFindings.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Looks for an MRZ of ICAO Doc 9303 (TD1, TD2, TD3, MRV-A, MRV-B), upright or rotated by
/// quarters, and returns its text when that is certain. Any thread.
CodelineFindings SearchCodeline(const PageImage& page);

}  // namespace conduit
