#include "virtual_reader/images/PageImage.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

#include "virtual_reader/InputFile.h"

// The decoder is a header that becomes code in the one file that asks for it.
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#define STBI_NO_STDIO
#define STBI_FAILURE_USERMSG
#include <stb/stb_image.h>

namespace conduit {
namespace {

/// A page of A4 at 600 dpi has 35 million. A small file may unpack to far more.
constexpr std::int64_t MostPixels = 40000000;

constexpr std::string_view PngStart = "\x89PNG\r\n\x1a\n";
constexpr std::string_view JpegStart = "\xFF\xD8\xFF";

bool IsImage(std::string_view bytes) {
  return bytes.starts_with(PngStart) || bytes.starts_with(JpegStart);
}

[[noreturn]] void RefuseForDecoder(const std::string& kind) {
  throw std::invalid_argument("this " + kind + " cannot be decoded: " + stbi_failure_reason());
}

/// The decoder fills up what is missing of a JPEG, and takes a cut PNG for one of
/// an unknown kind.
bool EndsEarly(std::string_view bytes) {
  if (bytes.starts_with(PngStart)) {
    return bytes.rfind("IEND\xAE\x42\x60\x82") == std::string_view::npos;
  }
  // A JPEG's pixels come last, behind a start of scan; a 0xFF among them is
  // followed by 0, so that no marker is found there that is none.
  const std::size_t end = bytes.rfind("\xFF\xD9");
  const std::size_t lastScan = bytes.rfind("\xFF\xDA");
  return end == std::string_view::npos || (lastScan != std::string_view::npos && end < lastScan);
}

}  // namespace

bool HasExtension(const std::filesystem::path& file,
                  std::initializer_list<std::string_view> known) {
  std::string extension = Utf8FromPath(file.extension());
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return std::find(known.begin(), known.end(), extension) != known.end();
}

bool IsImageName(const std::filesystem::path& file) {
  return HasExtension(file, {".png", ".jpg", ".jpeg"});
}

PageImage DecodeImage(std::string_view bytes) {
  if (!IsImage(bytes)) {
    throw std::invalid_argument("this is neither a PNG nor a JPEG image");
  }
  const std::string kind = bytes.starts_with(PngStart) ? "PNG" : "JPEG";
  if (EndsEarly(bytes)) {
    throw std::invalid_argument("this " + kind + " ends early");
  }
  const auto* const data = reinterpret_cast<const stbi_uc*>(bytes.data());
  const int size = static_cast<int>(bytes.size());
  PageImage image = {};
  int channels = 0;
  if (stbi_info_from_memory(data, size, &image.width, &image.height, &channels) == 0) {
    RefuseForDecoder(kind);
  }
  const std::int64_t pixels = std::int64_t{image.width} * image.height;
  if (pixels > MostPixels) {
    throw std::invalid_argument("the image has " + std::to_string(image.width) + " x " +
                                std::to_string(image.height) + " pixels, at most " +
                                std::to_string(MostPixels) + " are taken");
  }
  constexpr int lightAndOpacity = 2;
  const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> decoded(
      stbi_load_from_memory(data, size, &image.width, &image.height, &channels, lightAndOpacity),
      &stbi_image_free);
  if (decoded == nullptr) {
    RefuseForDecoder(kind);
  }
  image.light.reserve(static_cast<std::size_t>(pixels));
  for (std::int64_t i = 0; i < pixels; ++i) {
    // As if the page lay on white: where it is transparent, its colour is chance.
    const int light = decoded.get()[i * lightAndOpacity];
    const int opacity = decoded.get()[i * lightAndOpacity + 1];
    image.light.push_back(static_cast<std::uint8_t>(255 - (255 - light) * opacity / 255));
  }
  return image;
}

ImageFile ReadImageFile(const std::filesystem::path& file, std::uintmax_t limit) {
  ImageFile read = {ReadInputFile(file, limit), {}};
  if (IsImageName(file) || IsImage(read.bytes)) {
    read.image = DecodeImage(read.bytes);
  }
  return read;
}

}  // namespace conduit
