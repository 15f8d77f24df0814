#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "virtual_reader/pages/PageReaders.h"
#include "virtual_reader/session/Document.h"

namespace conduit {

/// Room for an uncompressed page image of A3 at 600 dpi in colour.
inline constexpr std::uintmax_t LargestImage = std::uintmax_t{256} << 20;

/// An image of a document, as it was read.
struct DocumentImage {
  const ImageFile* file;  ///< of the document
  std::string bytes;      ///< as they are sent; of a TIFF, the PNG of its page
  PageReading reading;    ///< has the error when the file cannot be read either
};

/// The request for an image, with its bytes. Throws std::invalid_argument when they cannot be read.
PageRequest RequestOf(const ImageFile& file);

/// Reads all images of a document in their order: decodes them, and searches those that show a
/// page. Takes long; errors are in the result. [any thread]
std::vector<DocumentImage> ReadImages(const Document& document, PageReaders* readers);

/// The error that the reader raises in place of an image.
std::string ErrorOf(const DocumentImage& image);

/// Adds the images, before them the codeline and after them the barcodes that were read from
/// them, one that several of them show counted once. An image that cannot be read is an error in
/// its place. Takes the bytes of the images.
void AddImages(Step* step, std::span<DocumentImage> images, const PagesWanted& wanted);

}  // namespace conduit
