#pragma once

#include <chrono>
#include <deque>
#include <filesystem>

#include "virtual_reader/pages/PageReaders.h"
#include "virtual_reader/session/Document.h"
#include "virtual_reader/session/ScanFolder.h"

namespace conduit {

/// Returns the documents of an image file: one, or one for each page of a TIFF. Reads the text
/// beside the image. A file that cannot be read is a document with an error.
std::deque<Document> DocumentsOf(const std::filesystem::path& folder, const ScanFolder::Scan& scan,
                                 PageReaders* readers);

/// Returns whether the image can be decoded, or a TIFF has a page. An image that takes until
/// `latest` counts as readable.
bool IsReadable(const std::filesystem::path& folder, const ScanFolder::Scan& scan,
                PageReaders* readers, std::chrono::steady_clock::time_point latest);

}  // namespace conduit
