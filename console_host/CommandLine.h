#pragma once

#include <CLI/CLI.hpp>

namespace conduit {

/// Adds everything that `conduit` can be asked to do: what is parsed, what --help shows,
/// and what the manual page and the shells' completions are made from.
/// @param exitStatus  receives the program's exit status when a command has run;
///                    outlives the app
void DefineCommandLine(CLI::App& app, int& exitStatus);

}  // namespace conduit
