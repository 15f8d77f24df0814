#pragma once

namespace conduit {

/// Makes a terminal take UTF-8 and colours, where it has to be told.
/// @returns whether standard output is a terminal that shows colours.
bool PrepareTerminal();

/// Whether a person sees standard output and standard error on one terminal.
bool TroubleShowsBesideOutput();

}  // namespace conduit
