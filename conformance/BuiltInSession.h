#pragma once

#include <filesystem>

namespace conduit {

/// Writes a short session with its image into a folder: documents with a
/// codeline, an image and barcodes, and a card swipe.
/// @returns the session's file.
std::filesystem::path WriteBuiltInSession(const std::filesystem::path& folder);

}  // namespace conduit
