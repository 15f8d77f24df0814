#pragma once

#include <CLI/CLI.hpp>

namespace conduit {

/// Adds `conduit describe` to the command line.
/// @param exitStatus  receives the program's exit status when the command has
///                    run; outlives `app`
void AddDescribeCommand(CLI::App& app, int& exitStatus);

}  // namespace conduit
