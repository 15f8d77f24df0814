#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "virtual_reader/pages/PageReaders.h"
#include "virtual_reader/session/StepBuilder.h"

namespace conduit {

/// Room for an uncompressed page image of A3 at 600 dpi in colour.
inline constexpr std::uintmax_t LargestImage = std::uintmax_t{256} << 20;

/// An image of a document, and what kind it is sent as.
struct DocumentImage {
  ReaderDataType type;
  std::string name;   ///< of its file, for the log
  std::string place;  ///< what an error with it is said of
  std::string bytes;  ///< as they are sent
  PageReading reading = {};
};

/// What is to be read from the images that show a page: not what the document
/// gives itself.
struct PagesWanted {
  bool codeline = true;
  bool barcodes = true;
  bool aamva = true;
};

/// Reads the images that hold their bytes: decodes them, and searches those that show a
/// page. A TIFF becomes a PNG of its first page.
void ReadImages(std::vector<DocumentImage>* images, const PagesWanted& wanted,
                PageReaders* readers);

/// Adds the images, before them the codeline and behind them the barcodes that were read
/// from them, one that several of them show counted once. A damaged image is an error in its
/// place.
void AddImages(std::vector<DocumentImage> images, const PagesWanted& wanted, StepBuilder* step);

}  // namespace conduit
