#pragma once

#include <filesystem>

namespace conduit {

/// Whether this process writes its standard output or its standard error into the file, by
/// whatever name.
bool IsStandardStream(const std::filesystem::path& file);

}  // namespace conduit
