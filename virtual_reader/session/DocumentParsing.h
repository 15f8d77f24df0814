#pragma once

#include <filesystem>

#include "virtual_reader/session/Document.h"
#include "virtual_reader/session/SessionField.h"

namespace conduit {

/// Parses a step of a session file. Checks it whole, with its files; reads them but for images.
/// Throws a SessionError that names the place.
/// @param folder  where the file names of the session start from
Document ParseStep(const SessionField& step, const std::filesystem::path& folder);

}  // namespace conduit
