#pragma once

#include <string>
#include <string_view>

#include "virtual_reader/images/ImageFormat.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Each decodes bytes that FormatOf has found to be of its format, as DecodeImage
/// promises. Any thread.
PageImage DecodePng(std::string_view bytes);
PageImage DecodeJpeg(std::string_view bytes);
PageImage DecodeTiff(std::string_view bytes);
PageImage DecodeBmp(std::string_view bytes);

/// Throws the std::invalid_argument of a file that is cut short.
[[noreturn]] void RefuseShortFile();

/// Throws the std::invalid_argument of a damaged file, with the decoder's own reason.
[[noreturn]] void RefuseDamaged(ImageFormat format, const std::string& reason);

}  // namespace conduit
