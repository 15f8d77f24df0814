#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace conduit {

/// Throws std::invalid_argument with the reason when there is no such file, when
/// it is none, empty or larger than the limit. Opens nothing, so that nothing waits.
std::uintmax_t RequireInputFile(const std::filesystem::path& file, std::uintmax_t limit);

/// The bytes of a file. Throws std::invalid_argument with the reason when it is
/// missing, no file, empty, larger than the limit or cannot be read.
std::string ReadInputFile(const std::filesystem::path& file, std::uintmax_t limit);

}  // namespace conduit
