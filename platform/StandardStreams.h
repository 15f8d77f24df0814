#pragma once

#include <filesystem>

namespace conduit {

/// Returns whether the standard output or standard error of this process is the file, under
/// any of its names.
bool IsStandardStream(const std::filesystem::path& file);

}  // namespace conduit
