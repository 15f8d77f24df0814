#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace conduit {

/// The line that a program is started with, which the C runtime of the program takes
/// apart into its words again.
/// @param arguments  after the program's name, in UTF-8
std::wstring CommandLine(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments);

}  // namespace conduit
