#pragma once

#include <memory>

#include "virtual_reader/session/Session.h"

namespace conduit {

/// What reads page images: the program beside the library that this code is in.
std::shared_ptr<PageReaders> MakePageReaders();

/// Adds to the remarks of a session what its readers do not look for on pages. Throws a
/// SessionError when pages cannot be read here.
void RemarkLimits(Session* session);

}  // namespace conduit
