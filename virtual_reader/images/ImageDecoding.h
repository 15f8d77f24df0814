#pragma once

#include <string_view>

#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Decodes a PNG, a JPEG, the first page of a TIFF or a BMP to its light. The page
/// stands upright, as its EXIF or TIFF orientation asks for; what is transparent lies
/// on white. Any thread.
///
/// Throws std::invalid_argument with a reason for the user when the bytes are none of
/// these, end early, are damaged, or have more pixels than MostPixels. That is told
/// from the header, before memory is taken; decoding takes at most 4 bytes a pixel
/// beside the file's own, but for a progressive JPEG (see MostMemory).
PageImage DecodeImage(std::string_view bytes);

}  // namespace conduit
