#pragma once

#include <CLI/CLI.hpp>

namespace conduit {

/// Adds `conduit validate` to the command line.
/// @param exitStatus  receives the program's exit status when the command has
///                    run; outlives `app`
void AddValidateCommand(CLI::App& app, int& exitStatus);

}  // namespace conduit
