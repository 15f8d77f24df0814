#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace conduit {

/// Returns the path of a UTF-8 text. All our texts are UTF-8; the constructor of a path
/// would assume the system's own encoding.
std::filesystem::path PathFromUtf8(std::string_view text);

std::string Utf8FromPath(const std::filesystem::path& path);

/// Throws std::runtime_error with the path and the reason unless the path is a folder
/// or a readable file.
/// @param what  the kind of input, for the message: "session"
void RequireReadable(const char* what, const std::filesystem::path& path);

}  // namespace conduit
