// For builds without the formats' own libraries. Holds more memory than they do, and
// turns no page by its EXIF orientation.
#include <algorithm>
#include <climits>
#include <cstddef>
#include <memory>

#include "virtual_reader/images/Decoders.h"
#include "virtual_reader/images/ImageLimits.h"

// The decoder is a header that becomes code in the file that asks for it. What it
// asserts must not end the process.
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_NO_STDIO
#define STBI_FAILURE_USERMSG
#define STBI_ASSERT(condition) static_cast<void>(0)
#include <stb/stb_image.h>

namespace conduit {
namespace {

PageImage Decode(ImageFormat format, std::string_view bytes) {
  const auto* const data = reinterpret_cast<const stbi_uc*>(bytes.data());
  const int size = static_cast<int>(std::min<std::size_t>(bytes.size(), INT_MAX));
  PageImage image = {};
  int channels = 0;
  if (stbi_info_from_memory(data, size, &image.width, &image.height, &channels) == 0) {
    RefuseDamaged(format, stbi_failure_reason());
  }
  CheckSize(image.width, image.height);
  constexpr int lightAndOpacity = 2;
  const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> decoded(
      stbi_load_from_memory(data, size, &image.width, &image.height, &channels, lightAndOpacity),
      &stbi_image_free);
  if (decoded == nullptr) {
    RefuseDamaged(format, stbi_failure_reason());
  }
  image.light.resize(static_cast<std::size_t>(image.width) *
                     static_cast<std::size_t>(image.height));
  const stbi_uc* from = decoded.get();
  for (std::uint8_t& light : image.light) {
    // As if the page lay on white: where it is transparent, its colour is chance.
    light = static_cast<std::uint8_t>(255 - (255 - from[0]) * from[1] / 255);
    from += lightAndOpacity;
  }
  return image;
}

/// Four bytes, the most significant first.
std::int64_t NumberAt(std::string_view bytes, std::size_t place) {
  std::int64_t number = 0;
  for (const char byte : bytes.substr(place, 4)) {
    number = number * 256 + static_cast<unsigned char>(byte);
  }
  return number;
}

}  // namespace

PageImage DecodePng(std::string_view bytes) {
  // The decoder takes a cut PNG for one of an unknown kind.
  if (bytes.rfind("IEND\xAE\x42\x60\x82") == std::string_view::npos) {
    RefuseShortFile();
  }
  // Of one that is too large the decoder says that it is none at all.
  constexpr std::size_t widthInHeader = 16;
  constexpr std::size_t heightInHeader = 20;
  if (bytes.size() >= heightInHeader + 4) {
    CheckSize(NumberAt(bytes, widthInHeader), NumberAt(bytes, heightInHeader));
  }
  return Decode(ImageFormat::Png, bytes);
}

PageImage DecodeJpeg(std::string_view bytes) {
  // The decoder fills up what is missing. The pixels come last, behind a start of scan; a
  // 0xFF among them is followed by 0, so that no marker is found there that is none.
  const std::size_t end = bytes.rfind("\xFF\xD9");
  const std::size_t lastScan = bytes.rfind("\xFF\xDA");
  if (end == std::string_view::npos || (lastScan != std::string_view::npos && end < lastScan)) {
    RefuseShortFile();
  }
  return Decode(ImageFormat::Jpeg, bytes);
}

}  // namespace conduit
