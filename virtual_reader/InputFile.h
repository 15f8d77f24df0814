#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace conduit {

/// The path that a UTF-8 text names, whatever the system's own encoding.
std::filesystem::path PathFromUtf8(std::string_view text);

std::string Utf8FromPath(const std::filesystem::path& path);

/// Throws std::invalid_argument with the reason when there is no such file, when
/// it is none, empty or larger than the limit. Opens nothing, so that nothing waits.
std::uintmax_t RequireInputFile(const std::filesystem::path& file, std::uintmax_t limit);

/// The bytes of a file. Throws std::invalid_argument with the reason when it is
/// missing, no file, empty, larger than the limit or cannot be read.
std::string ReadInputFile(const std::filesystem::path& file, std::uintmax_t limit);

}  // namespace conduit
