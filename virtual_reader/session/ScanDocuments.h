#pragma once

#include <chrono>
#include <deque>
#include <filesystem>

#include "virtual_reader/pages/PageReaders.h"
#include "virtual_reader/session/Document.h"
#include "virtual_reader/session/ScanFolder.h"

namespace conduit {

/// The documents of one file of a folder: one, and of a TIFF of several pages as many. Reads the
/// text beside it. A file that cannot be read is a document with an error.
std::deque<Document> DocumentsOf(const std::filesystem::path& folder, const ScanFolder::Scan& scan,
                                 PageReaders* readers);

/// Whether the file can be decoded, or of a TIFF its directory be read; one of which that is
/// not known by `latest` counts as readable.
bool IsReadable(const std::filesystem::path& folder, const ScanFolder::Scan& scan,
                PageReaders* readers, std::chrono::steady_clock::time_point latest);

}  // namespace conduit
