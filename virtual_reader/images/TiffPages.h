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
  std::string png;  ///< in the page's colours and resolution; 1 bit per pixel stays 1 bit
};

/// The pages of a TIFF file: grey, palette, RGB, YCbCr or CMYK, 1 to 16 bits, in strips or
/// tiles, uncompressed or compressed by CCITT fax, LZW, Deflate, PackBits or JPEG. Reduced
/// copies and masks do not count as pages.
///
/// Every failure throws std::invalid_argument with a reason for the user. A damaged page
/// does not affect the others.
class TiffPages {
 public:
  /// Lists the pages without decoding them.
  explicit TiffPages(const std::filesystem::path& file);

  /// @param bytes  borrowed; must outlive the object
  static TiffPages OfBytes(std::string_view bytes);

  TiffPages(TiffPages&& other) noexcept;
  TiffPages& operator=(TiffPages&& other) noexcept;
  TiffPages(const TiffPages&) = delete;
  TiffPages& operator=(const TiffPages&) = delete;
  ~TiffPages();

  /// Returns whether these are the pages of `file`, which has not changed since.
  bool AreOf(const std::filesystem::path& file) const;

  /// Returns the number of pages, at least 1.
  std::size_t Count() const;

  /// Decodes a page. Needs at most 4 bytes per pixel in addition to the PNG and a strip or a
  /// row of tiles. Keeps the file open only meanwhile. [any thread; one waits for the other]
  /// Throws std::invalid_argument when the file has no such page (any more).
  TiffPage Read(std::size_t index) const;

  /// Decodes a page without making its PNG.
  PageImage ReadImage(std::size_t index) const;

 private:
  struct Source;

  explicit TiffPages(std::unique_ptr<Source> given);

  std::unique_ptr<Source> source;
};

}  // namespace conduit
