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
  PageReading reading;    ///< its error also covers a file that cannot be read
};

/// The request for an image, with its bytes. Throws std::invalid_argument when they cannot be read.
PageRequest RequestOf(const ImageFile& file);

/// Reads all images of a document: decodes them, and searches those that show a page. Returns them
/// in their order, errors included. Takes long. [any thread]
std::vector<DocumentImage> ReadImages(const Document& document, PageReaders* readers);

/// The error that the reader raises in place of an image.
std::string ErrorOf(const DocumentImage& image);

/// Adds the codeline read from the images, the images, and the barcodes read from them. A barcode
/// that several images show is added once. An image that cannot be read becomes an error. Moves
/// the bytes out of `images`.
void AddImages(Step* step, std::span<DocumentImage> images, const PagesWanted& wanted);

}  // namespace conduit
