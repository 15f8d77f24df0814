#include "virtual_reader/images/ImageDecoding.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "virtual_reader/images/Decoders.h"
#include "virtual_reader/images/ImageLimits.h"

namespace conduit {

void CheckSize(std::int64_t width, std::int64_t height) {
  const auto refuse = [&](const std::string& limit) {
    throw std::invalid_argument("the image has " + std::to_string(width) + " x " +
                                std::to_string(height) + " pixels, at most " + limit +
                                " are taken");
  };
  if (width < 1 || height < 1) {
    throw std::invalid_argument("the image has no pixels");
  }
  // First, so that the product below does not overflow.
  if (std::max(width, height) > LongestSide) {
    refuse(std::to_string(LongestSide) + " along a side");
  }
  if (width * height > MostPixels) {
    refuse(std::to_string(MostPixels / 1'000'000) + " million");
  }
}

void RefuseShortFile() { throw std::invalid_argument("the file ends early"); }

void RefuseDamaged(ImageFormat format, const std::string& reason) {
  throw std::invalid_argument(std::string("this ") + NameOf(format) +
                              " cannot be decoded: " + reason);
}

PageImage DecodeImage(std::string_view bytes) {
  const std::optional<ImageFormat> format = FormatOf(bytes);
  if (!format) {
    throw std::invalid_argument("it is neither a PNG, a JPEG, a TIFF nor a BMP image");
  }
  switch (*format) {
    case ImageFormat::Png:
      return DecodePng(bytes);
    case ImageFormat::Jpeg:
      return DecodeJpeg(bytes);
    case ImageFormat::Tiff:
      return DecodeTiff(bytes);
    case ImageFormat::Bmp:
      break;
  }
  return DecodeBmp(bytes);
}

}  // namespace conduit
