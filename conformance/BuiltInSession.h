#pragma once

#include <filesystem>

namespace conduit {

/// A short session: documents with a codeline, an image and barcodes, and a card
/// swipe. Writes it with its image into a folder.
/// @returns the session's file.
std::filesystem::path WriteBuiltInSession(const std::filesystem::path& folder);

/// A session of ten equal documents, with its image.
/// @returns the session's file.
std::filesystem::path WriteSessionOfManyDocuments(const std::filesystem::path& folder);

}  // namespace conduit
