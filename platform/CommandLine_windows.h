#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace conduit {

/// Returns the command line of a program, quoted so that the program's C runtime splits
/// it into the same words.
/// @param arguments  after the program's name, in UTF-8
std::wstring CommandLine(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments);

/// Returns the words of a command line without the first, in UTF-8, as the system's
/// CommandLineToArgvW does. That function is in shell32, which loads user32, and Windows
/// sends no log-off event to a console program that has user32 loaded.
std::vector<std::string> ArgumentsOf(std::wstring_view line);

}  // namespace conduit
