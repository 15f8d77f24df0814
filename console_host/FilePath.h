#pragma once

#include <filesystem>
#include <string>

namespace conduit {

/// Texts in this program are UTF-8 on every system; a path built from one
/// directly takes it in the system's own encoding.
std::filesystem::path PathFromUtf8(const std::string& text);

std::string Utf8FromPath(const std::filesystem::path& path);

/// Throws a std::runtime_error that names the path and the reason when it is
/// neither a folder nor a file that can be read.
/// @param what  "session"
void RequireReadable(const char* what, const std::filesystem::path& path);

}  // namespace conduit
