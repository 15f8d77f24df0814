#pragma once

#include <vector>

#include "virtual_reader/session/Document.h"
#include "virtual_reader/session/DocumentImages.h"

namespace conduit {

/// Makes the step that plays a document: its events, and its parts in their order. The lines for
/// the log come first, so that they introduce the callbacks to a reader of both.
/// @param images  as ReadImages returns them for the document
Step MakeStep(const Document& document, std::vector<DocumentImage> images);

}  // namespace conduit
