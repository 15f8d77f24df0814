#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace conduit {

/// The line that a program is started with, which the C runtime of the program takes
/// apart into its words again.
/// @param arguments  after the program's name, in UTF-8
std::wstring CommandLine(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments);

/// The words of such a line without the first, in UTF-8: what the system's own
/// CommandLineToArgvW gives. That one stands among what works with windows, and Windows
/// tells a console program that has it loaded of no log-off.
std::vector<std::string> ArgumentsOf(std::wstring_view line);

}  // namespace conduit
