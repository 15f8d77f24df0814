#pragma once

#include "virtual_reader/records/CodelineReading.h"
#include "virtual_reader/session/SessionField.h"

namespace conduit {

/// Reads the codeline that a session gives as a list of lines, or as an object
/// of lines and of record fields that differ from what the lines say.
CodelineReading ReadSessionCodeline(const SessionField& field);

}  // namespace conduit
