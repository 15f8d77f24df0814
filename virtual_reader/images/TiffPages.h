#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_reader/pixels/PageImage.h"

namespace conduit {

/// A page of a TIFF, upright.
struct TiffPage {
  PageImage image;
  std::string png;  ///< in its colours and its resolution; a page of 1 bit stays one
};

/// The pages of a TIFF file: grey, palette, RGB, YCbCr, inks, of 1 to 16 bits, in strips
/// or tiles, as they are or packed by fax (CCITT), LZW, Deflate, PackBits or JPEG.
/// Reduced copies and masks are no pages.
///
/// Everything that fails throws std::invalid_argument with a reason for the user. What
/// is wrong with one page does not keep another from being read.
class TiffPages {
 public:
  /// Lists the pages and decodes none.
  explicit TiffPages(const std::filesystem::path& file);

  /// @param bytes  lent for as long as this object is there
  static TiffPages OfBytes(std::string_view bytes);

  TiffPages(TiffPages&& other) noexcept;
  TiffPages& operator=(TiffPages&& other) noexcept;
  TiffPages(const TiffPages&) = delete;
  TiffPages& operator=(const TiffPages&) = delete;
  ~TiffPages();

  /// Returns whether these are the pages of `file`, which has not changed since.
  bool AreOf(const std::filesystem::path& file) const;

  /// At least 1.
  std::size_t Count() const;

  /// Decodes a page, with at most 4 bytes a pixel beside its PNG and a strip or a row of
  /// tiles. The file is open only meanwhile. [any thread; one waits for the other]
  /// @param index  less than Count()
  TiffPage Read(std::size_t index) const;

  /// Only what the page shows.
  PageImage ReadImage(std::size_t index) const;

 private:
  struct Source;

  explicit TiffPages(std::unique_ptr<Source> given);

  std::unique_ptr<Source> source;
};

}  // namespace conduit
