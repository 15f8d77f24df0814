#pragma once

#include <chrono>
#include <deque>
#include <filesystem>
#include <memory>

#include "virtual_reader/pages/PageReaders.h"
#include "virtual_reader/session/ScanFolder.h"
#include "virtual_reader/session/Session.h"

namespace conduit {

/// The work on one file of a folder: a document, and for a TIFF of several pages
/// as many. A page that cannot be read becomes an error that names it.
std::deque<StepWork> WorkOnScan(const std::filesystem::path& folder, const ScanFolder::Scan& scan,
                                const std::shared_ptr<PageReaders>& readers);

/// Whether the file can be decoded, or of a TIFF its directory be read; one of which that is
/// not known by `latest` counts as readable.
bool IsReadable(const std::filesystem::path& folder, const ScanFolder::Scan& scan,
                PageReaders* readers, std::chrono::steady_clock::time_point latest);

}  // namespace conduit
