// As in decoding, the function that calls setjmp has no locals with a destructor.
#include <png.h>

#include <csetjmp>
#include <cstddef>
#include <exception>
#include <stdexcept>

#include "virtual_reader/images/PngWriting.h"

namespace conduit {
namespace {

class PngWritten {
 public:
  explicit PngWritten(const PngContent& content)
      : content(content),
        row(static_cast<std::size_t>(content.walk.width) *
            static_cast<std::size_t>(content.channels)) {
    png = png_create_write_struct(
        PNG_LIBPNG_VER_STRING, this,
        [](png_structp failed, png_const_charp /*message*/) { png_longjmp(failed, 1); },
        [](png_structp /*png*/, png_const_charp /*message*/) {});
    info = png == nullptr ? nullptr : png_create_info_struct(png);
  }
  ~PngWritten() { png_destroy_write_struct(&png, &info); }
  PngWritten(const PngWritten&) = delete;
  PngWritten& operator=(const PngWritten&) = delete;

  std::string Write() {
    if (info == nullptr || !WriteRows()) {
      throw std::runtime_error("cannot write the page as a PNG: out of memory");
    }
    return std::move(bytes);
  }

 private:
  static void OnWrite(png_structp png, png_bytep from, std::size_t length) {
    if (!static_cast<PngWritten*>(png_get_io_ptr(png))->Append(from, length)) {
      png_error(png, "out of memory");
    }
  }

  /// No exception may pass through libpng.
  bool Append(const png_byte* from, std::size_t length) {
    try {
      bytes.append(reinterpret_cast<const char*>(from), length);
      return true;
    } catch (const std::exception&) {
      return false;
    }
  }

  bool WriteRows() {
    if (setjmp(png_jmpbuf(png)) != 0) {  // NOLINT(cert-err52-cpp): libpng's way out
      return false;
    }
    png_set_write_fn(png, this, OnWrite, [](png_structp /*png*/) {});
    const UprightWalk& walk = content.walk;
    png_set_IHDR(png, info, static_cast<png_uint_32>(walk.width),
                 static_cast<png_uint_32>(walk.height), content.blackAndWhite ? 1 : 8,
                 content.channels == 1 ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (content.pixelsPerMetreAcross != 0 && content.pixelsPerMetreDown != 0) {
      png_set_pHYs(png, info, content.pixelsPerMetreAcross, content.pixelsPerMetreDown,
                   PNG_RESOLUTION_METER);
    }
    // Writing takes about as long as reading the page; higher levels save little.
    png_set_compression_level(png, content.blackAndWhite ? 6 : 2);
    png_set_filter(png, PNG_FILTER_TYPE_BASE,
                   content.blackAndWhite ? PNG_FILTER_NONE : PNG_FILTER_SUB);
    png_write_info(png, info);
    if (content.blackAndWhite) {
      png_set_packing(png);
    }
    for (int y = 0; y < walk.height; ++y) {
      FillRow(y);
      png_write_row(png, row.data());
    }
    png_write_end(png, info);
    return true;
  }

  void FillRow(int y) {
    const UprightWalk& walk = content.walk;
    const auto step = walk.right * content.channels;
    const std::uint8_t* from =
        content.samples.data() + (walk.start + y * walk.down) * content.channels;
    std::uint8_t* to = row.data();
    for (int x = 0; x < walk.width; ++x, from += step) {
      if (content.blackAndWhite) {
        *to++ = from[0] >> 7;
        continue;
      }
      for (int channel = 0; channel < content.channels; ++channel) {
        *to++ = from[channel];
      }
    }
  }

  const PngContent& content;
  std::vector<std::uint8_t> row;
  std::string bytes;
  png_structp png = nullptr;
  png_infop info = nullptr;
};

}  // namespace

std::string WritePng(const PngContent& content) { return PngWritten(content).Write(); }

}  // namespace conduit
