#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace conduit {

/// The names that a library exports, without those that a toolchain adds by
/// itself: marks of the linker and, where templates are exported, instances of
/// the standard library's. Throws a std::runtime_error with the reason when the
/// file cannot be read as a library.
///
/// REQUIRES: an absolute path; the library is loaded.
std::vector<std::string> ExportedNames(const std::filesystem::path& file);

}  // namespace conduit
