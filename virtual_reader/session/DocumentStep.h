#pragma once

#include <vector>

#include "virtual_reader/session/Document.h"
#include "virtual_reader/session/DocumentImages.h"

namespace conduit {

/// Makes the step that plays a document: its events, its parts in their order, and before them
/// all lines for the log, so that who reads it beside the callbacks knows what they are about.
/// @param images  as ReadImages returns them for the document
Step MakeStep(const Document& document, std::vector<DocumentImage> images);

}  // namespace conduit
