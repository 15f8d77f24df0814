#pragma once

#include <filesystem>

#include "virtual_reader/session/Session.h"

namespace conduit {

/// The images of a folder as documents, in the order of their names. Throws a
/// SessionError when the folder cannot be read, or no image in it.
Session ReadFolder(const std::filesystem::path& folder);

/// The same of a folder that fills: what is in it, and every file that arrives or
/// changes, as soon as it has stopped growing. Such a session has no end. Throws
/// a SessionError when the folder cannot be read.
Session WatchFolder(const std::filesystem::path& folder);

}  // namespace conduit
