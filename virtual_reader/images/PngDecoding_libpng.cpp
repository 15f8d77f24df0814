// libpng reports an error by longjmp. So the functions that call setjmp (Begin, DecodeRows)
// have no locals with a destructor; their caller owns all memory.
#include <png.h>

#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "virtual_reader/images/Decoders.h"
#include "virtual_reader/images/ImageLimits.h"
#include "virtual_reader/images/Orientation.h"

namespace conduit {
namespace {

std::uint32_t NumberAt(std::string_view bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (const char c : bytes.substr(at, 4)) {
    number = number << 8 | static_cast<unsigned char>(c);
  }
  return number;
}

/// Walks the chunks to the last one, so that an oversized or truncated image is refused
/// before it is decoded, even with a damaged header. Returns the content of the EXIF chunk;
/// empty when there is none.
std::string_view FollowChunks(std::string_view bytes) {
  constexpr std::size_t signature = 8;
  constexpr std::size_t around = 12;  // length, type and CRC of a chunk
  constexpr std::size_t size = 16;    // offset of width and height in IHDR
  if (bytes.size() >= size + 8) {
    CheckSize(NumberAt(bytes, size), NumberAt(bytes, size + 4));
  }
  std::string_view exif;
  for (std::size_t at = signature; bytes.size() - at >= around;) {
    const std::string_view type = bytes.substr(at + 4, 4);
    const std::size_t length = NumberAt(bytes, at);
    if (length > bytes.size() - at - around) {
      break;
    }
    if (type == "IEND") {
      return exif;
    }
    if (type == "eXIf") {
      exif = bytes.substr(at + 8, length);
    }
    at += around + length;
  }
  RefuseShortFile();
}

class PngReading {
 public:
  explicit PngReading(std::string_view bytes) : left(bytes) {
    png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, OnError, OnWarning);
    info = png == nullptr ? nullptr : png_create_info_struct(png);
  }
  ~PngReading() { png_destroy_read_struct(&png, &info, nullptr); }
  PngReading(const PngReading&) = delete;
  PngReading& operator=(const PngReading&) = delete;

  PageImage Decode() {
    if (info == nullptr || !Begin()) {
      RefuseDamaged(ImageFormat::Png, reason);
    }
    const std::uint32_t width = png_get_image_width(png, info);
    const std::uint32_t height = png_get_image_height(png, info);
    CheckSize(width, height);
    PageImage image = {static_cast<int>(width), static_cast<int>(height), {}};
    image.luminance.resize(static_cast<std::size_t>(width) * height);
    if (!DecodeRows(image.luminance.data(), width, height)) {
      RefuseDamaged(ImageFormat::Png, reason);
    }
    return image;
  }

 private:
  [[noreturn]] static void OnError(png_structp png, png_const_charp message) {
    auto* const reading = static_cast<PngReading*>(png_get_error_ptr(png));
    std::snprintf(reading->reason, sizeof reading->reason, "%s", message);
    png_longjmp(png, 1);
  }

  static void OnWarning(png_structp /*png*/, png_const_charp /*message*/) {}

  static void OnRead(png_structp png, png_bytep to, std::size_t length) {
    auto* const reading = static_cast<PngReading*>(png_get_io_ptr(png));
    if (length > reading->left.size()) {
      png_error(png, "the file ends early");
    }
    std::memcpy(to, reading->left.data(), length);
    reading->left.remove_prefix(length);
  }

  bool Begin() {
    if (setjmp(png_jmpbuf(png)) != 0) {  // NOLINT(cert-err52-cpp): libpng's way out
      return false;
    }
    png_set_read_fn(png, this, OnRead);
    png_read_info(png, info);
    return true;
  }

  bool DecodeRows(std::uint8_t* light, std::uint32_t width, std::uint32_t height) {
    if (setjmp(png_jmpbuf(png)) != 0) {  // NOLINT(cert-err52-cpp): libpng's way out
      return false;
    }
    AskForLight();
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, info);
    if (png_get_rowbytes(png, info) != width) {
      png_error(png, "its rows cannot be converted to grey values");
    }
    for (int pass = 0; pass < passes; ++pass) {
      for (std::uint32_t row = 0; row < height; ++row) {
        png_read_row(png, light + static_cast<std::size_t>(row) * width, nullptr);
      }
    }
    png_read_end(png, nullptr);
    return true;
  }

  /// Requests one byte of luminance per pixel, whatever the file's colour type.
  void AskForLight() {
    const int colour = png_get_color_type(png, info);
    png_set_expand(png);
    png_set_scale_16(png);
    if ((colour & PNG_COLOR_MASK_COLOR) != 0) {
      constexpr int silently = 1;
      png_set_rgb_to_gray_fixed(png, silently, 29900, 58700);
    }
    if ((colour & PNG_COLOR_MASK_ALPHA) != 0 || png_get_valid(png, info, PNG_INFO_tRNS) != 0) {
      constexpr png_color_16 white = {0, 255, 255, 255, 255};  // at the requested 8 bits
      png_set_background_fixed(png, &white, PNG_BACKGROUND_GAMMA_SCREEN, 0, PNG_FP_1);
    }
  }

  png_structp png = nullptr;
  png_infop info = nullptr;
  std::string_view left;
  char reason[100] = "out of memory";
};

}  // namespace

PageImage DecodePng(std::string_view bytes) {
  const std::string_view exif = FollowChunks(bytes);
  PageImage image = PngReading(bytes).Decode();
  if (exif.empty()) {
    return image;
  }
  // libexif requires this prefix, which the chunk does not have.
  const std::string data = std::string("Exif\0\0", 6) + std::string(exif);
  return Upright(std::move(image), ExifOrientation(data));
}

}  // namespace conduit
