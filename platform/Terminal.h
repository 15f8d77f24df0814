#pragma once

namespace conduit {

/// Enables UTF-8 and colours on a terminal, where the system requires that.
/// @returns whether standard output is a terminal that shows colours.
bool PrepareTerminal();

/// Returns whether standard output and standard error are both a terminal.
bool TroubleShowsBesideOutput();

}  // namespace conduit
