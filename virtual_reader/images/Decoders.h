#pragma once

#include <string>
#include <string_view>

#include "virtual_reader/images/ImageFormat.h"
#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// Each decodes bytes of its format, as FormatOf detects it, with the guarantees of
/// DecodeImage. [any thread]
PageImage DecodePng(std::string_view bytes);
PageImage DecodeJpeg(std::string_view bytes);
PageImage DecodeTiff(std::string_view bytes);
PageImage DecodeBmp(std::string_view bytes);

/// Throws std::invalid_argument: the file is truncated.
[[noreturn]] void RefuseShortFile();

/// Throws std::invalid_argument: the file is damaged; with the decoder's reason.
[[noreturn]] void RefuseDamaged(ImageFormat format, const std::string& reason);

}  // namespace conduit
