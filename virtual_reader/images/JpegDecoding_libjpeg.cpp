// libjpeg requires an error handler that does not return: this one calls longjmp. So the
// functions that call setjmp (Begin, DecodeRows) have no locals with a destructor; their
// caller owns all memory.
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio>

// Requires the includes above.
#include <jerror.h>
#include <jpeglib.h>

#include <algorithm>
#include <iterator>

#include "virtual_reader/images/Decoders.h"
#include "virtual_reader/images/ImageLimits.h"
#include "virtual_reader/images/Orientation.h"

namespace conduit {
namespace {

/// Maximum scans of a progressive JPEG. A scan of a few bytes costs a pass over the whole
/// image. Encoders write about ten.
constexpr int MostScans = 64;

/// Warnings after which libjpeg invents pixels: the page would differ from the scanned one.
constexpr int LostPixels[] = {JWRN_HIT_MARKER, JWRN_HUFF_BAD_CODE, JWRN_MUST_RESYNC};

class JpegReading {
 public:
  explicit JpegReading(std::string_view bytes) : bytes(bytes) {
    jpeg.err = jpeg_std_error(&errors);
    jpeg.client_data = this;
    errors.error_exit = [](j_common_ptr common) {
      auto* const reading = static_cast<JpegReading*>(common->client_data);
      (*common->err->format_message)(common, reading->reason);
      std::longjmp(reading->escape, 1);  // NOLINT(cert-err52-cpp): the one way out
    };
    errors.emit_message = [](j_common_ptr common, int level) {
      if (level < 0) {
        static_cast<JpegReading*>(common->client_data)->OnWarning();
      }
    };
    progress.progress_monitor = [](j_common_ptr common) {
      auto* const reading = static_cast<JpegReading*>(common->client_data);
      if (reading->jpeg.input_scan_number > MostScans) {
        reading->Escape("it has too many scans");
      }
    };
  }
  ~JpegReading() { jpeg_destroy_decompress(&jpeg); }
  JpegReading(const JpegReading&) = delete;
  JpegReading& operator=(const JpegReading&) = delete;

  PageImage Decode() {
    if (!Begin()) {
      Refuse();
    }
    CheckSize(jpeg.image_width, jpeg.image_height);
    CheckMemory();
    PageImage image = {static_cast<int>(jpeg.image_width), static_cast<int>(jpeg.image_height), {}};
    image.luminance.resize(static_cast<std::size_t>(jpeg.image_width) * jpeg.image_height);
    // libjpeg converts every colour space to grey except CMYK.
    const bool inks = jpeg.num_components == 4;
    jpeg.out_color_space = inks ? JCS_CMYK : JCS_GRAYSCALE;
    std::vector<std::uint8_t> inkRow(inks ? std::size_t{4} * jpeg.image_width : 0);
    if (!DecodeRows(image.luminance.data(), inks ? inkRow.data() : nullptr)) {
      Refuse();
    }
    return image;
  }

 private:
  [[noreturn]] void Escape(const char* why) {
    std::snprintf(reason, sizeof reason, "%s", why);
    std::longjmp(escape, 1);  // NOLINT(cert-err52-cpp): the one way out
  }

  void OnWarning() {
    if (errors.msg_code == JWRN_JPEG_EOF) {
      endsEarly = true;
      Escape("");
    }
    if (std::find(std::begin(LostPixels), std::end(LostPixels), errors.msg_code) !=
        std::end(LostPixels)) {
      (*errors.error_exit)(reinterpret_cast<j_common_ptr>(&jpeg));
    }
  }

  [[noreturn]] void Refuse() const {
    if (endsEarly) {
      RefuseShortFile();
    }
    RefuseDamaged(ImageFormat::Jpeg, reason);
  }

  bool Begin() {
    if (setjmp(escape) != 0) {  // NOLINT(cert-err52-cpp): the one way out
      return false;
    }
    jpeg_create_decompress(&jpeg);
    jpeg.progress = &progress;
    jpeg_mem_src(&jpeg, reinterpret_cast<const unsigned char*>(bytes.data()),
                 static_cast<unsigned long>(bytes.size()));
    jpeg_read_header(&jpeg, TRUE);
    return true;
  }

  /// Throws when an image of several scans, whose coefficients of 2 bytes stay in memory,
  /// exceeds MostMemory.
  void CheckMemory() {
    if (jpeg_has_multiple_scans(&jpeg) == FALSE) {
      return;
    }
    auto memory = std::int64_t{jpeg.image_width} * jpeg.image_height;
    for (int i = 0; i < jpeg.num_components; ++i) {
      const jpeg_component_info& component = jpeg.comp_info[i];
      memory += std::int64_t{component.width_in_blocks} * component.height_in_blocks * DCTSIZE2 *
                std::int64_t{sizeof(JCOEF)};
    }
    if (memory > MostMemory) {
      RefuseDamaged(ImageFormat::Jpeg,
                    "it is a progressive one of " + std::to_string(jpeg.image_width) + " x " +
                        std::to_string(jpeg.image_height) + " pixels, which needs " +
                        std::to_string(memory / 1'000'000) + " MB, the limit is " +
                        std::to_string(MostMemory / 1'000'000) + " MB");
    }
  }

  bool DecodeRows(std::uint8_t* light, std::uint8_t* inkRow) {
    if (setjmp(escape) != 0) {  // NOLINT(cert-err52-cpp): the one way out
      return false;
    }
    jpeg_start_decompress(&jpeg);
    while (jpeg.output_scanline < jpeg.output_height) {
      std::uint8_t* const to = light + std::size_t{jpeg.output_scanline} * jpeg.output_width;
      JSAMPROW row = inkRow != nullptr ? inkRow : to;
      jpeg_read_scanlines(&jpeg, &row, 1);
      if (inkRow != nullptr) {
        LuminanceOfInks(inkRow, to);
      }
    }
    jpeg_finish_decompress(&jpeg);
    return true;
  }

  /// Converts CMYK to luminance. Files with an Adobe marker store inverted ink values.
  void LuminanceOfInks(const std::uint8_t* inks, std::uint8_t* light) const {
    const int turned = jpeg.saw_Adobe_marker != FALSE ? 0 : 255;
    for (JDIMENSION x = 0; x < jpeg.output_width; ++x, inks += 4) {
      const int noBlack = inks[3] ^ turned;
      const auto through = [&](int ink) { return (ink ^ turned) * noBlack / 255; };
      light[x] = LuminanceOf(through(inks[0]), through(inks[1]), through(inks[2]));
    }
  }

  std::string_view bytes;
  jpeg_decompress_struct jpeg = {};
  jpeg_error_mgr errors = {};
  jpeg_progress_mgr progress = {};
  std::jmp_buf escape = {};
  bool endsEarly = false;
  char reason[JMSG_LENGTH_MAX] = {};
};

}  // namespace

PageImage DecodeJpeg(std::string_view bytes) {
  // Frees the decoder's memory before the page is rotated.
  PageImage image = JpegReading(bytes).Decode();
  return Upright(std::move(image), ExifOrientation(bytes));
}

}  // namespace conduit
