#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace conduit {

/// Returns the names that a library exports, without those of the toolchain: linker
/// symbols and template instances of the standard library. Throws
/// std::runtime_error with the reason when the file is not a readable library.
///
/// REQUIRES: an absolute path; the library is loaded.
std::vector<std::string> ExportedNames(const std::filesystem::path& file);

}  // namespace conduit
