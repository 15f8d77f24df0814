#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace conduit {

/// The arguments after the program's name, in UTF-8.
std::vector<std::string> ProgramArguments(int count, const char* const* arguments);

/// Where this program stands.
std::filesystem::path ProgramFile();

/// Sets an environment variable for this process and the libraries that it
/// loads from then on.
void SetEnvironment(const char* name, const std::filesystem::path& value);

}  // namespace conduit
