#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace conduit {

/// The path that a UTF-8 text names: texts are UTF-8 here on every system, and a path
/// built from one directly takes it in the system's own encoding.
std::filesystem::path PathFromUtf8(std::string_view text);

std::string Utf8FromPath(const std::filesystem::path& path);

/// Throws a std::runtime_error that names the path and the reason when it is
/// neither a folder nor a file that can be read.
/// @param what  "session"
void RequireReadable(const char* what, const std::filesystem::path& path);

}  // namespace conduit
