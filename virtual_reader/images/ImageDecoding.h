#pragma once

#include <string_view>

#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Decodes a PNG, a JPEG, the first page of a TIFF or a BMP to luminance (grey values).
/// Applies the EXIF or TIFF orientation, so that the page is upright, and a white
/// background to transparent pixels. [any thread]
///
/// Throws std::invalid_argument with a reason for the user when the bytes are none of
/// these formats, truncated or damaged, or have more pixels than MostPixels. Checks the
/// size in the header before it allocates. Needs at most 4 bytes per pixel in addition to
/// the file, except for a progressive JPEG (see MostMemory).
PageImage DecodeImage(std::string_view bytes);

}  // namespace conduit
