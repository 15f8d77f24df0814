#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "virtual_reader/images/Decoders.h"
#include "virtual_reader/images/ImageLimits.h"
#include "virtual_reader/images/Orientation.h"

// stb_image is a single header; this file compiles its implementation. A failed assertion
// in it must not end the process.
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_BMP
#define STBI_NO_STDIO
#define STBI_FAILURE_USERMSG
#define STBI_ASSERT(condition) static_cast<void>(0)
#include <stb/stb_image.h>

namespace conduit {
namespace {

std::int64_t NumberAt(std::string_view bytes, std::size_t at, std::size_t length) {
  std::uint32_t number = 0;
  for (std::size_t i = length; i > 0; --i) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
  }
  return number;
}

/// Throws when the pixel data is shorter than the header says: the decoder would fill
/// missing pixels with black.
void CheckLength(std::string_view bytes, std::int64_t width, std::int64_t height) {
  const bool oldest = NumberAt(bytes, 14, 4) == 12;
  const std::int64_t bits = NumberAt(bytes, oldest ? 24 : 28, 2);
  const std::int64_t row = (width * bits + 31) / 32 * 4;
  if (NumberAt(bytes, 10, 4) + row * height > static_cast<std::int64_t>(bytes.size())) {
    RefuseShortFile();
  }
}

/// Converts colours to luminance in place, on a white background; the result fills the
/// first `count` bytes.
void ReduceToLight(stbi_uc* pixels, std::size_t count, int channels) {
  for (std::size_t i = 0; i < count; ++i) {
    const stbi_uc* const from = pixels + i * static_cast<std::size_t>(channels);
    const int light = channels < 3 ? from[0] : LuminanceOf(from[0], from[1], from[2]);
    const int opacity = channels % 2 == 0 ? from[channels - 1] : 255;
    pixels[i] = static_cast<stbi_uc>(255 - (255 - light) * opacity / 255);
  }
}

}  // namespace

PageImage DecodeBmp(std::string_view bytes) {
  constexpr std::size_t shortestHeaders = 30;
  if (bytes.size() < shortestHeaders) {
    RefuseShortFile();
  }
  const auto* const data = reinterpret_cast<const stbi_uc*>(bytes.data());
  const int size = static_cast<int>(std::min<std::size_t>(bytes.size(), INT_MAX));
  int width = 0;
  int height = 0;
  int channels = 0;
  if (stbi_info_from_memory(data, size, &width, &height, &channels) == 0) {
    RefuseDamaged(ImageFormat::Bmp, stbi_failure_reason());
  }
  // The height is negative when rows are stored top-down.
  const std::int64_t rows = std::abs(std::int64_t{height});
  CheckSize(width, rows);
  CheckLength(bytes, width, rows);
  std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> pixels(
      stbi_load_from_memory(data, size, &width, &height, &channels, 0), &stbi_image_free);
  if (pixels == nullptr) {
    RefuseDamaged(ImageFormat::Bmp, stbi_failure_reason());
  }
  const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  ReduceToLight(pixels.get(), count, channels);
  // Shrinks the buffer before the copy: together they would need 5 bytes per pixel.
  if (void* const smaller = std::realloc(pixels.get(), count); smaller != nullptr) {
    static_cast<void>(pixels.release());
    pixels.reset(static_cast<stbi_uc*>(smaller));
  }
  return {width, height, std::vector<std::uint8_t>(pixels.get(), pixels.get() + count)};
}

}  // namespace conduit
